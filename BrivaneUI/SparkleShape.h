#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// A four-pointed star whose sides bow inwards.
struct SparkleShape {
  /// How far the sides are drawn in: 0 straight, 1 to the middle.
  double pinch = 0;

  /// The star whose points touch the middles of the rectangle's edges.
  FilledPath path(const Rect& rect, const Ink& ink) const;
};

}  // namespace brivane
