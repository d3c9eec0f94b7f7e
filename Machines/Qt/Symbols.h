#pragma once

#include <QPainterPath>
#include <string>

namespace brivane {

/// The outline of the symbol with that name, to be filled, in a square from (0, 0) to (1, 1) with y
/// downwards; empty for names that aren't known: "moon.fill", "sun.min", "sun.max.fill",
/// "sparkles".
QPainterPath symbolOutline(const std::string& name);

}  // namespace brivane
