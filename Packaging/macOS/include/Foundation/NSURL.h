#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSURL : NSObject <NSCopying>
/// Nil for a text that is no URL.
+ (nullable instancetype)URLWithString:(NSString*)text;
@property(nullable, readonly, copy) NSString* absoluteString;
@end

#pragma clang assume_nonnull end
