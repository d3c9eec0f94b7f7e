#include "Machines/Mac/Frame/PictureView.h"

#include <vector>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/Painter.h"

namespace {

std::vector<brivane::Rect> spinnerBoxes(const brivane::DisplayList& picture) {
  std::vector<brivane::Rect> boxes;
  for (const brivane::Primitive& primitive : picture) {
    const auto* const spinner = std::get_if<brivane::Spinner>(&primitive);
    if (spinner != nullptr) boxes.push_back(spinner->box);
  }
  return boxes;
}

NSProgressIndicator* makeSpinner(const brivane::Rect& box) {
  NSProgressIndicator* const spinner =
      [[NSProgressIndicator alloc] initWithFrame:brivane::nsRect(box)];
  spinner.style = NSProgressIndicatorStyleSpinning;
  spinner.controlSize = NSControlSizeSmall;
  spinner.indeterminate = YES;
  [spinner startAnimation:nil];
  return spinner;
}

}  // namespace

@implementation BrivanePictureView {
  brivane::DisplayList picture;
  std::vector<brivane::Rect> boxes;
  NSMutableArray<NSProgressIndicator*>* spinners;
  BOOL hasDrawn;
}

- (id)accessibilityValue {
  return brivane::nsString(brivane::shownText(picture));
}

- (void)showPicture:(const brivane::DisplayList&)newPicture {
  picture = newPicture;
  [self showSpinners];
  self.needsDisplay = YES;
}

/// Spinners that keep their place go on turning.
- (void)showSpinners {
  auto newBoxes = spinnerBoxes(picture);
  if (newBoxes == boxes) return;
  boxes = std::move(newBoxes);
  for (NSProgressIndicator* spinner in spinners) [spinner removeFromSuperview];
  spinners = [[NSMutableArray alloc] init];
  for (const brivane::Rect& box : boxes) {
    NSProgressIndicator* const spinner = makeSpinner(box);
    [spinners addObject:spinner];
    [self addSubview:spinner];
  }
}

- (void)drawRect:(NSRect)dirtyRect {
  brivane::MacPainter painter;
  brivane::draw(picture, painter);
  // A transparent window's shadow follows its drawn content; it is computed only when invalidated.
  if (!hasDrawn) [self.window invalidateShadow];
  hasDrawn = YES;
}

@end
