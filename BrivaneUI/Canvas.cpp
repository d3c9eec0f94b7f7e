#include "BrivaneUI/Canvas.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace brivane {
namespace {

struct Drawing {
  Canvas& canvas;

  void operator()(const FilledRectangle& rectangle) const { canvas.fill(rectangle); }
  void operator()(const StrokedRectangle& rectangle) const { canvas.stroke(rectangle); }
  void operator()(const MaskedFill& fill) const { canvas.fillMasked(fill); }
  void operator()(const FilledPath& path) const { canvas.fillPath(path); }
  void operator()(const TextRun& text) const { canvas.drawText(text); }
  void operator()(const SymbolImage& symbol) const { canvas.drawSymbol(symbol); }
  void operator()(const Spinner& spinner) const { canvas.drawSpinner(spinner); }
};

}  // namespace

/// The curve's midpoint lies on the arc of the radius.
CornerCurve cornerCurve(const RoundedRectangle& rectangle) {
  const double half = std::min(rectangle.frame.width, rectangle.frame.height) / 2;
  const double radius = std::clamp(rectangle.cornerRadius, 0.0, half);
  const double start = std::min(1.28 * radius, half);
  return {start, (8 * (1 - std::sqrt(0.5)) * radius - start) / 3};
}

void draw(const DisplayList& list, Canvas& canvas) {
  for (const Primitive& primitive : list) std::visit(Drawing{canvas}, primitive);
}

}  // namespace brivane
