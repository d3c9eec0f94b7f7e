#pragma once

#include <string>

namespace brivane {

/// A position in global screen coordinates: points, origin at the lower left of the main screen,
/// y upwards.
struct Point {
  double x = 0;
  double y = 0;

  bool operator==(const Point&) const = default;
};

/// A rectangle in the same coordinates as `Point`; (x, y) is its lower left corner.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  bool operator==(const Rect&) const = default;
};

/// Whether the mouse at `point` is in `rect`, in coordinates with y upwards: the left and top edges
/// are inside, the right and bottom edges outside, so that touching screens share no point.
bool mouseInRect(Point point, const Rect& rect);

/// "{x, y}", each number in its shortest decimal form that reads back to the same value.
std::string describe(Point point);

}  // namespace brivane
