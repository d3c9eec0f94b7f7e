#include "BrivaneUI/LevelBar.h"

#include <algorithm>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

/// The position of level 100 on the bar.
constexpr double boostStart = 2.0 / 3.0;

}  // namespace

double LevelBar::fillWidth(double width) const {
  const double fraction = static_cast<double>(checkedSum(level, 100)) / 300;
  if (fraction <= 0) return 0;
  if (fraction >= 1) return std::max(width, height);
  return std::max(fraction * width, height);
}

DisplayList LevelBar::body(Point origin, double width, const HUDEnvironment& environment) const {
  const Rect area{origin.x, origin.y, width, height};
  const RoundedRectangle track{area, height / 2};
  const RoundedRectangle fill{{origin.x, origin.y, fillWidth(width), height}, height / 2};
  const Paint normal = environment.colors.levelBarNormalFill().resolved(environment.appearance);
  const Paint boost = boostColor.resolved(environment.appearance);
  const double middle = origin.y + height / 2;
  const LinearGradient gradient{
      {origin.x, middle},
      {origin.x + width, middle},
      {{0, normal}, {boostStart, normal}, {boostStart, boost}, {1, boost}},
  };
  const Paint empty = environment.colors.levelBarTrack().resolved(environment.appearance);
  return {FilledRectangle{track, empty}, MaskedFill{fill, area, gradient}};
}

}  // namespace brivane
