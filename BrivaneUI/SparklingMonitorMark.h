#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// A monitor's outline with a few sparkles, in warm light.
struct SparklingMonitorMark {
  /// The mark, as wide as the rectangle and standing on its lower edge, `height` high.
  DisplayList body(const Rect& rect) const;

  /// The height of a mark `width` wide.
  static double height(double width);
};

}  // namespace brivane
