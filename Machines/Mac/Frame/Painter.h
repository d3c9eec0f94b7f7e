#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Canvas.h"

namespace brivane {

/// Draws primitives into the graphics context that AppKit has set, whose origin is the lower left.
/// Spinners are left out: they turn by themselves, as views. Main thread.
class MacPainter : public Canvas {
 public:
  void fill(const FilledRectangle& rectangle) override;
  void stroke(const StrokedRectangle& rectangle) override;
  void fillMasked(const MaskedFill& fill) override;
  void fillPath(const FilledPath& path) override;
  void drawText(const TextRun& text) override;
  void drawSymbol(const SymbolImage& symbol) override;
  void drawSpinner(const Spinner& spinner) override;
};

/// The outline of a rectangle with continuous corners: they begin a little further from the corner
/// than an arc would, so that the curve sets in gently. Empty without width or height.
NSBezierPath* continuousRectangle(const RoundedRectangle& shape);

}  // namespace brivane
