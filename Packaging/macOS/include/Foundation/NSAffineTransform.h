#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

@interface NSAffineTransform : NSObject <NSCopying>
+ (NSAffineTransform*)transform;
/// Of what is drawn before the transformation that there is already.
- (void)translateXBy:(CGFloat)x yBy:(CGFloat)y;
- (void)scaleBy:(CGFloat)factor;
@end

#pragma clang assume_nonnull end
