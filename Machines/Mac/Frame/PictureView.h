#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/DisplayList.h"

/// A view that shows a picture; the picture's spinners are views of the system within it.
@interface BrivanePictureView : NSView
- (void)showPicture:(const brivane::DisplayList&)newPicture;
@end
