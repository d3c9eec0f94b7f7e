#pragma once

#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "Machines/Common/Frame/LiveDesk.h"

namespace brivane {

/// How a desk's displays lie on a real screen: all at one scale, so that the arrangement of the
/// windows is that of the displays. Between the windows of displays that touch there is a small
/// gap. A window that would be too small is larger than its display, and may lie over others.
class DeskMap {
 public:
  /// The largest scale at which all windows have their place in the room, but no larger than life;
  /// in the middle of it.
  static DeskMap fitting(const std::vector<Rect>& frames, const LiveRoom& room);

  LivePlace window(const Rect& frame) const;
  /// The frame that has its window there, in whole points of the desk.
  Rect movedFrame(const Rect& frame, int windowX, int windowY) const;
  /// Whether all windows would lie in the room.
  bool fits(const std::vector<Rect>& frames) const;
  double pointsPerPoint() const { return scale; }

 private:
  LiveRoom room;
  double scale = 1;
  /// Where the desk's origin is on the screen.
  double originX = 0;
  double originY = 0;
};

/// The frame at a place near by where it touches others without a gap, as displays do; the same
/// frame when it is farther away than `reach` from all.
Rect snapped(const Rect& frame, const std::vector<Rect>& others, double reach);

/// A point of the frame, in parts of its width from the left and its height from the top; on the
/// edge when it would be outside.
Point pointIn(const Rect& frame, double x, double y);

}  // namespace brivane
