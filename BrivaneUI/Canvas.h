#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// Draws a display list's primitives, each over those before it. Main thread.
class Canvas {
 public:
  virtual ~Canvas() = default;

  virtual void fill(const FilledRectangle& rectangle) = 0;
  virtual void stroke(const StrokedRectangle& rectangle) = 0;
  virtual void fillMasked(const MaskedFill& fill) = 0;
  virtual void fillPath(const FilledPath& path) = 0;
  virtual void drawText(const TextRun& text) = 0;
  virtual void drawSymbol(const SymbolImage& symbol) = 0;
  virtual void drawSpinner(const Spinner& spinner) = 0;
};

/// A continuous corner as one cubic: how far from the corner it begins, which is further than an
/// arc would, and how far from it the control points lie. A square corner has 0.
struct CornerCurve {
  double start = 0;
  double handle = 0;
};

CornerCurve cornerCurve(const RoundedRectangle& rectangle);

/// Every primitive of the list, in its order.
void draw(const DisplayList& list, Canvas& canvas);

}  // namespace brivane
