#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Canvas.h"

namespace brivane {

/// Draws primitives into AppKit's current graphics context, origin at the lower left. Spinners are
/// left out: they are views that animate themselves. Main thread.
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

/// The outline of a rectangle with continuous corners, which begin further from the corner than
/// arcs would. Empty without width or height.
NSBezierPath* continuousRectangle(const RoundedRectangle& shape);

}  // namespace brivane
