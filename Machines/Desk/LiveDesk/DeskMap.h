#pragma once

#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "Machines/Common/Frame/LiveDesk.h"

namespace brivane {

/// Places a desk's displays on a real screen, all at one scale, so that the windows are arranged as
/// the displays are. Windows of displays that touch have a small gap between them. A window that
/// would be too small is enlarged, and may overlap others.
class DeskMap {
 public:
  /// Centred in the room, at the largest scale at which all windows fit, at most 1.
  static DeskMap fitting(const std::vector<Rect>& frames, const LiveRoom& room);

  LivePlace window(const Rect& frame) const;
  /// The frame for a window at that place, in whole points of the desk.
  Rect movedFrame(const Rect& frame, int windowX, int windowY) const;
  /// Whether all windows lie in the room.
  bool fits(const std::vector<Rect>& frames) const;
  double pointsPerPoint() const { return scale; }

 private:
  LiveRoom room;
  double scale = 1;
  /// The desk's origin on the screen.
  double originX = 0;
  double originY = 0;
};

/// The frame moved so that it touches its neighbours, as displays do; unchanged when it is farther
/// than `reach` from all others.
Rect snapped(const Rect& frame, const std::vector<Rect>& others, double reach);

/// The point at fractions of the frame's width (from the left) and height (from the top), clamped
/// to the frame.
Point pointIn(const Rect& frame, double x, double y);

}  // namespace brivane
