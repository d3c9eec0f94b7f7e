#pragma once

#include <QColor>

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/Color.h"

namespace brivane {

/// The paint as Qt's colour, the desktop's own colours as they are in that appearance; the accent
/// is the highlight of the application's palette.
QColor resolvedColor(const Paint& paint, Appearance appearance);

}  // namespace brivane
