#include "BrivaneUI/Canvas.h"

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

void draw(const DisplayList& list, Canvas& canvas) {
  for (const Primitive& primitive : list) std::visit(Drawing{canvas}, primitive);
}

}  // namespace brivane
