#include "Machines/Common/Frame/Transition.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

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

double fastAtFirst(double progress) {
  const double left = 1 - progress;
  return 1 - left * left;
}

bool haveSameParts(const DisplayList& from, const DisplayList& to) {
  return std::ranges::equal(from, to, {}, &Primitive::index, &Primitive::index);
}

/// For two primitives of the same type.
Primitive interrupted(const Primitive& from, const Primitive& to, double progress) {
  const auto* const oldBar = std::get_if<MaskedFill>(&from);
  if (oldBar == nullptr) return to;
  MaskedFill bar = std::get<MaskedFill>(to);
  bar.mask.frame = between(oldBar->mask.frame, bar.mask.frame, progress);
  return bar;
}

void add(DisplayList& list, const Primitive& from, const Primitive& to, double progress) {
  const auto* const oldSymbol = std::get_if<SymbolImage>(&from);
  const auto* const newSymbol = std::get_if<SymbolImage>(&to);
  if (oldSymbol == nullptr || oldSymbol->name == newSymbol->name) {
    list.push_back(interrupted(from, to, progress));
    return;
  }
  list.emplace_back(faded(*oldSymbol, 1 - progress));
  list.emplace_back(faded(*newSymbol, progress));
}

}  // namespace

DisplayList between(const DisplayList& from, const DisplayList& to, double progress) {
  if (progress >= 1 || !haveSameParts(from, to)) return to;
  DisplayList list;
  for (std::size_t index = 0; index < to.size(); ++index) {
    add(list, from[index], to[index], progress);
  }
  return list;
}

DisplayList interrupted(const DisplayList& from, const DisplayList& to, double progress) {
  if (!haveSameParts(from, to)) return to;
  DisplayList list;
  std::ranges::transform(from, to, std::back_inserter(list),
                         [progress](const Primitive& before, const Primitive& after) {
                           return interrupted(before, after, progress);
                         });
  return list;
}

double Animation::progress(Instant now) const {
  const double passed = secondsBetween(start, now);
  if (passed >= durationSeconds) return 1;
  return std::max(passed / durationSeconds, 0.0);
}

double Fade::alpha(Instant now) const {
  const double share = progress(now);
  if (share >= 1) return to;
  return between(from, to, timing == AnimationTiming::easeIn ? share * share : share);
}

void Transition::turnTo(const DisplayList& picture, double seconds, Instant now) {
  from = interrupted(from, to, fastAtFirst(progress(now)));
  to = picture;
  start = now;
  durationSeconds = seconds;
}

DisplayList Transition::picture(Instant now) const {
  return between(from, to, fastAtFirst(progress(now)));
}

}  // namespace brivane
