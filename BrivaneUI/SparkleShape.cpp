#include "BrivaneUI/SparkleShape.h"

#include <array>

namespace brivane {
namespace {

Point between(Point from, Point to, double share) {
  return {from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share};
}

}  // namespace

FilledPath SparkleShape::path(const Rect& rect, const Ink& ink) const {
  const Point middle{rect.x + rect.width / 2, rect.y + rect.height / 2};
  const Point top{middle.x, rect.y + rect.height};
  const std::array<Point, 4> points = {
      {{rect.x + rect.width, middle.y}, {middle.x, rect.y}, {rect.x, middle.y}, top}};
  FilledPath star{top, {}, ink};
  Point last = top;
  for (const Point& point : points) {
    star.segments.push_back({between(last, middle, pinch), between(point, middle, pinch), point});
    last = point;
  }
  return star;
}

}  // namespace brivane
