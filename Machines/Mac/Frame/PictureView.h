#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/DisplayList.h"

/// Shows a picture; its spinners are the system's views, as subviews.
@interface BrivanePictureView : NSView
- (void)showPicture:(const brivane::DisplayList&)newPicture;
@end
