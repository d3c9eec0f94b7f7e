#pragma once

#include <cstdint>

#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/HUDEnvironment.h"

namespace brivane {

/// A bar whose full width spans the levels -100 to 200, in another colour above 100.
struct LevelBar {
  std::int64_t level = 0;
  double height = 0;
  DynamicColor boostColor;

  /// The width of the fill in a bar `width` wide: 0 at level -100 and below, else at least the
  /// bar's height, so that the ends stay round.
  double fillWidth(double width) const;

  /// The track and the fill of a bar whose lower left corner is `origin`.
  DisplayList body(Point origin, double width, const HUDEnvironment& environment) const;
};

}  // namespace brivane
