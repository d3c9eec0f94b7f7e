#pragma once

#include <QKeyEvent>
#include <cstdint>
#include <optional>
#include <variant>

#include "Machines/Common/Frame/LiveDesk.h"

namespace brivane {

/// A key of a simulated machine's keyboard: a virtual key code or a brightness key.
using DeskKey = std::variant<std::uint16_t, LiveBrightnessKey>;

/// The key at the place of the event's key; nothing for keys that the simulated keyboard lacks.
/// Keys with a function are found by Qt's name, because not every X server numbers them like a PC.
std::optional<DeskKey> deskKeyOf(const QKeyEvent& event);

}  // namespace brivane
