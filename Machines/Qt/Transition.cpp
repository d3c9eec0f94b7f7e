#include "Machines/Qt/Transition.h"

#include <cstddef>

namespace brivane {
namespace {

Paint faded(const Paint& paint, double opacity) {
  if (const auto* const color = std::get_if<Color>(&paint)) {
    return Color{color->red, color->green, color->blue, color->alpha * opacity};
  }
  const auto& system = std::get<SystemPaint>(paint);
  return SystemPaint{system.color, system.opacity * opacity};
}

SymbolImage faded(const SymbolImage& symbol, double opacity) {
  return {symbol.box, symbol.name, faded(symbol.paint, opacity)};
}

double between(double from, double to, double progress) {
  return from + (to - from) * progress;
}

Rect between(const Rect& from, const Rect& to, double progress) {
  return {between(from.x, to.x, progress), between(from.y, to.y, progress),
          between(from.width, to.width, progress), between(from.height, to.height, progress)};
}

void add(DisplayList& list, const Primitive& from, const Primitive& to, double progress) {
  const auto* const oldSymbol = std::get_if<SymbolImage>(&from);
  const auto* const newSymbol = std::get_if<SymbolImage>(&to);
  const auto* const oldBar = std::get_if<MaskedFill>(&from);
  const auto* const newBar = std::get_if<MaskedFill>(&to);
  if (oldSymbol != nullptr && newSymbol != nullptr && oldSymbol->name != newSymbol->name) {
    list.emplace_back(faded(*oldSymbol, 1 - progress));
    list.emplace_back(faded(*newSymbol, progress));
  } else if (oldBar != nullptr && newBar != nullptr) {
    MaskedFill bar = *newBar;
    bar.mask.frame = between(oldBar->mask.frame, newBar->mask.frame, progress);
    list.emplace_back(bar);
  } else {
    list.push_back(to);
  }
}

}  // namespace

DisplayList between(const DisplayList& from, const DisplayList& to, double progress) {
  if (progress >= 1 || from.size() != to.size()) return to;
  DisplayList list;
  for (std::size_t index = 0; index < to.size(); ++index) {
    if (from[index].index() != to[index].index()) return to;
    add(list, from[index], to[index], progress);
  }
  return list;
}

}  // namespace brivane
