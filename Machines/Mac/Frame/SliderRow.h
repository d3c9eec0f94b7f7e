#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/StatusItem.h"

/// A menu row with a slider, as wide as the menu.
@interface BrivaneSliderRow : NSView
/// The action is called with the slider at every step of a drag.
- (instancetype)initWithSlider:(const brivane::MenuSlider&)item
                        target:(id)target
                        action:(SEL)action;
@property(nonatomic, readonly) NSSlider* slider;
/// Lets the slider begin where the menu's titles do, which ticks move to the right.
- (void)alignToTitlesMovedBy:(CGFloat)tickColumnWidth;
@end
