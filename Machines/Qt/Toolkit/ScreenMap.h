#pragma once

#include <QRect>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// The place of a window with that frame on the desktop, in pixels from the desktop's upper left.
/// The rectangle around the machine's screens is mapped to the desktop: on a real machine each
/// point to its pixel, on a simulated machine scaled. The middle of the window's lower edge is
/// mapped; the window's size is multiplied by `scale`.
QRect placeOnDesktop(const Rect& frame, const std::vector<Screen>& screens, const QRect& desktop,
                     double scale);

/// The same on the current desktop, in Qt's coordinates.
QRect placeOnScreens(const Rect& frame, const std::vector<Screen>& screens, double scale);

}  // namespace brivane
