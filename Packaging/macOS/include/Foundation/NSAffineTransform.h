#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

@interface NSAffineTransform : NSObject <NSCopying>
+ (NSAffineTransform*)transform;
- (void)scaleBy:(CGFloat)factor;
@end

#pragma clang assume_nonnull end
