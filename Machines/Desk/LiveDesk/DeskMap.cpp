#include "Machines/Desk/LiveDesk/DeskMap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace brivane {
namespace {

/// On every side of a window, in points of the screen.
constexpr int margin = 2;

int rounded(double length) {
  return static_cast<int>(std::lround(length));
}

/// An interval along one axis.
struct Stretch {
  double from = 0;
  double length = 0;

  double to() const { return from + length; }
  bool comesNear(const Stretch& other, double reach) const {
    return from <= other.to() + reach && other.from <= to() + reach;
  }
};

/// The shortest signed distance that makes an end of one meet an end of the other.
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

Stretch downwards(const Rect& frame) {
  return {-(frame.y + frame.height), frame.height};
}

/// The windows of all displays along one axis.
struct Row {
  std::vector<Stretch> displays;
  double from = 0;
  double roomLength = 0;
  double smallestWindow = 0;

  /// The largest scale at which no window ends outside the room. Enlarged windows begin where their
  /// displays do.
  double largestScale() const {
    double scale = 1;
    for (const Stretch& display : displays) {
      if (display.to() > from) scale = std::min(scale, roomLength / (display.to() - from));
      if (display.from > from && roomLength > smallestWindow) {
        scale = std::min(scale, (roomLength - smallestWindow) / (display.from - from));
      }
    }
    return scale;
  }
  double lengthAt(double scale) const {
    double length = 0;
    for (const Stretch& display : displays) {
      const double window = std::max(display.length * scale, smallestWindow);
      length = std::max(length, (display.from - from) * scale + window);
    }
    return length;
  }
};

Row rowOf(const std::vector<Rect>& frames, Stretch (*along)(const Rect&), int roomLength,
          int smallestWindow) {
  Row row{{}, 0, static_cast<double>(roomLength), smallestWindow + 2.0 * margin};
  for (const Rect& frame : frames) row.displays.push_back(along(frame));
  row.from = std::ranges::min(row.displays, {}, &Stretch::from).from;
  return row;
}

/// The shortest signed distance within reach along the axis of `along`; 0 when there is none.
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
  if (frames.empty()) return map;
  const LivePlace& area = room.area;
  const Row columns = rowOf(frames, across, area.width, room.smallestWidth);
  const Row rows = rowOf(frames, downwards, area.height, room.smallestHeight);
  map.scale = std::min(columns.largestScale(), rows.largestScale());
  map.originX = area.x + (area.width - columns.lengthAt(map.scale)) / 2 - columns.from * map.scale;
  map.originY = area.y + (area.height - rows.lengthAt(map.scale)) / 2 - rows.from * map.scale;
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
    return place.x >= area.x && place.y >= area.y && place.x + place.width <= area.x + area.width &&
           place.y + place.height <= area.y + area.height;
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
