#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

@interface NSValue : NSObject <NSCopying>
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
+ (NSNumber*)numberWithDouble:(double)value;
@property(readonly) unsigned int unsignedIntValue;
@property(readonly) double doubleValue;
@end

#pragma clang assume_nonnull end
