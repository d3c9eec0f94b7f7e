#pragma once

#import <Foundation/Foundation.h>

@interface NSAffineTransform (NSAppKitAdditions)
/// What is drawn afterwards is transformed first.
- (void)concat;
@end
