#include "Machines/Desk/DeskMap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace brivane {
namespace {

/// On every side of a window, in points of the screen.
constexpr int margin = 2;

Rect around(const std::vector<Rect>& frames) {
  Rect all = frames.front();
  for (const Rect& frame : frames) {
    const double right = std::max(all.x + all.width, frame.x + frame.width);
    const double top = std::max(all.y + all.height, frame.y + frame.height);
    all.x = std::min(all.x, frame.x);
    all.y = std::min(all.y, frame.y);
    all.width = right - all.x;
    all.height = top - all.y;
  }
  return all;
}

int rounded(double length) {
  return static_cast<int>(std::lround(length));
}

/// A stretch in one direction, of a display or of its neighbour.
struct Stretch {
  double from = 0;
  double length = 0;

  double to() const { return from + length; }
  bool comesNear(const Stretch& other, double reach) const {
    return from <= other.to() + reach && other.from <= to() + reach;
  }
};

/// How far to go so that an end of the one meets an end of the other: the shortest way.
double wayTo(const Stretch& one, const Stretch& other) {
  double way = std::numeric_limits<double>::infinity();
  for (const double end : {one.from, one.to()}) {
    for (const double goal : {other.from, other.to()}) {
      if (std::abs(goal - end) < std::abs(way)) way = goal - end;
    }
  }
  return way;
}

Stretch across(const Rect& frame) {
  return {frame.x, frame.width};
}

Stretch upwards(const Rect& frame) {
  return {frame.y, frame.height};
}

/// The shortest way within reach, in the direction that `along` looks; 0 when there is none.
double shortestWay(const Rect& frame, const std::vector<Rect>& others, double reach,
                   Stretch (*along)(const Rect&), Stretch (*beside)(const Rect&)) {
  double shortest = reach;
  bool isFound = false;
  for (const Rect& other : others) {
    if (!beside(frame).comesNear(beside(other), reach)) continue;
    const double way = wayTo(along(frame), along(other));
    if (std::abs(way) > std::abs(shortest)) continue;
    shortest = way;
    isFound = true;
  }
  return isFound ? shortest : 0;
}

}  // namespace

DeskMap DeskMap::fitting(const std::vector<Rect>& frames, const LiveRoom& room) {
  DeskMap map;
  map.room = room;
  const Rect all = frames.empty() ? Rect{0, 0, 1, 1} : around(frames);
  const LivePlace& area = room.area;
  if (all.width > 0 && all.height > 0) {
    map.scale = std::min({1.0, area.width / all.width, area.height / all.height});
  }
  map.originX = area.x + (area.width - all.width * map.scale) / 2 - all.x * map.scale;
  map.originY =
      area.y + (area.height - all.height * map.scale) / 2 + (all.y + all.height) * map.scale;
  return map;
}

LivePlace DeskMap::window(const Rect& frame) const {
  const double left = originX + frame.x * scale;
  const double top = originY - (frame.y + frame.height) * scale;
  return {rounded(left) + margin, rounded(top) + margin,
          std::max(rounded(frame.width * scale) - 2 * margin, room.smallestWidth),
          std::max(rounded(frame.height * scale) - 2 * margin, room.smallestHeight)};
}

Rect DeskMap::movedFrame(const Rect& frame, int windowX, int windowY) const {
  const double left = (windowX - margin - originX) / scale;
  const double top = (originY - (windowY - margin)) / scale;
  return {std::round(left), std::round(top - frame.height), frame.width, frame.height};
}

bool DeskMap::fits(const std::vector<Rect>& frames) const {
  const LivePlace& area = room.area;
  return std::ranges::all_of(frames, [&](const Rect& frame) {
    const LivePlace place = window(frame);
    // Windows that are larger than their displays may hang over at the right and below.
    return place.x >= area.x && place.y >= area.y &&
           place.x + rounded(frame.width * scale) <= area.x + area.width + 2 * margin &&
           place.y + rounded(frame.height * scale) <= area.y + area.height + 2 * margin;
  });
}

Rect snapped(const Rect& frame, const std::vector<Rect>& others, double reach) {
  Rect result = frame;
  result.x += shortestWay(result, others, reach, across, upwards);
  result.y += shortestWay(result, others, reach, upwards, across);
  return result;
}

Point pointIn(const Rect& frame, double x, double y) {
  const double fromLeft = std::clamp(x * frame.width, 0.0, std::max(frame.width - 1, 0.0));
  const double fromTop = std::clamp(y * frame.height, 0.0, std::max(frame.height - 1, 0.0));
  return {std::floor(frame.x + fromLeft), std::ceil(frame.y + frame.height - fromTop)};
}

}  // namespace brivane
