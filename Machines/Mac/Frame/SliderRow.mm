#include "Machines/Mac/Frame/SliderRow.h"

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Mac/Frame/AppKitValues.h"

namespace {

constexpr double rowWidth = 260;
constexpr double rowHeight = 28;
/// The indentation of a menu's titles without ticks.
constexpr double margin = 14;

}  // namespace

@implementation BrivaneSliderRow

- (instancetype)initWithSlider:(const brivane::MenuSlider&)item
                        target:(id)target
                        action:(SEL)action {
  self = [super initWithFrame:NSMakeRect(0, 0, rowWidth, rowHeight)];
  if (self == nil) return nil;
  self.autoresizingMask = NSViewWidthSizable;
  _slider = [NSSlider sliderWithValue:item.value
                             minValue:item.minimum
                             maxValue:item.maximum
                               target:target
                               action:action];
  _slider.autoresizingMask = NSViewWidthSizable;
  _slider.continuous = YES;
  [_slider setAccessibilityLabel:brivane::nsString(item.accessibilityLabel)];
  [self addSubview:_slider];
  [self alignToTitlesMovedBy:0];
  return self;
}

/// A slider's frame is wider than what is visible of it.
- (void)alignToTitlesMovedBy:(CGFloat)tickColumnWidth {
  const CGFloat start = margin + tickColumnWidth;
  const NSRect visible = NSMakeRect(start, 0, self.bounds.size.width - start - margin, rowHeight);
  _slider.frame = [_slider frameForAlignmentRect:visible];
}

/// Required by NSView; a row can't come from an archive.
- (instancetype)initWithCoder:(NSCoder*)coder {
  brivane::fatal("init(coder:) is not used");
}

@end
