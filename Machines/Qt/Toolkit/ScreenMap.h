#pragma once

#include <QRect>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// Where a window of that frame goes on the desktop, in pixels from the desktop's upper left. The
/// machine's screens and the desktop's are laid over each other by their outer edges. On a real
/// machine both are the same and every point has its pixel; the screens of a simulated one are
/// drawn together to the size of the desktop. A window keeps its size times `scale`, and the middle
/// of its lower edge.
QRect placeOnDesktop(const Rect& frame, const std::vector<Screen>& screens, const QRect& desktop,
                     double scale);

/// The same on the desktop that there is, in Qt's own coordinates.
QRect placeOnScreens(const Rect& frame, const std::vector<Screen>& screens, double scale);

}  // namespace brivane
