#include "BrivaneCore/Support/Geometry.h"

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {

bool mouseInRect(Point point, const Rect& rect) {
  return point.x >= rect.x && point.x < rect.x + rect.width && point.y > rect.y &&
         point.y <= rect.y + rect.height;
}

std::string describe(Point point) {
  return "{" + shortestDecimal(point.x) + ", " + shortestDecimal(point.y) + "}";
}

}  // namespace brivane
