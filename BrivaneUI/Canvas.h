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

/// A continuous corner as one cubic: the distances from the corner to the curve's ends, larger than
/// an arc's, and to its control points. 0 for a square corner.
struct CornerCurve {
  double start = 0;
  double handle = 0;
};

CornerCurve cornerCurve(const RoundedRectangle& rectangle);

void draw(const DisplayList& list, Canvas& canvas);

}  // namespace brivane
