#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@property(readonly) NSUInteger length;
- (BOOL)isEqualToString:(NSString*)other;
@end

#pragma clang assume_nonnull end
