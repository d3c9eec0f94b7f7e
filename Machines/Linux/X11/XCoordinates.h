#pragma once

#include "BrivaneCore/Support/Geometry.h"
#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

// X's origin is the top left of its screen, y downwards; the program's is the lower left of the
// main output, y upwards. A pixel becomes the point at its top edge: a screen includes its top edge
// and excludes its bottom edge, so every pixel lies on the screen that shows it.

inline Point globalPoint(int x, int y, const XOutput& main) {
  return {.x = static_cast<double>(x - main.x), .y = static_cast<double>(main.y + main.height - y)};
}

inline Rect globalFrame(const XOutput& output, const XOutput& main) {
  const Point lowerLeft = globalPoint(output.x, output.y + output.height, main);
  return {.x = lowerLeft.x,
          .y = lowerLeft.y,
          .width = static_cast<double>(output.width),
          .height = static_cast<double>(output.height)};
}

}  // namespace brivane
