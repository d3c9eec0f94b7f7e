#pragma once

#include <QPainterPath>
#include <string>

namespace brivane {

/// The outline of the symbol with that name, to be filled, in that square with y downwards; empty
/// for unknown names. Known are "moon.fill", "sun.min", "sun.max.fill" and "sparkles".
QPainterPath symbolOutline(const std::string& name, const QRectF& square);

}  // namespace brivane
