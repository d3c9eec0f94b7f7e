#pragma once

#include <QColor>

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/Color.h"

namespace brivane {

/// The paint as Qt's colour, system colours as in that appearance; the accent is the highlight of
/// the application's palette.
QColor resolvedColor(const Paint& paint, Appearance appearance);

}  // namespace brivane
