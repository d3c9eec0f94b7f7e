#pragma once

#include <QKeyEvent>
#include <cstdint>
#include <optional>
#include <variant>

#include "Machines/Common/Frame/LiveDesk.h"

namespace brivane {

/// A key of a simulated machine's keyboard: an ordinary one, by its virtual key code, or one of the
/// brightness keys.
using DeskKey = std::variant<std::uint16_t, LiveBrightnessKey>;

/// The key at the same place as the one that the event is about; nothing for keys that such a
/// keyboard hasn't. Keys that are named by what they do are found by their name, as not every X
/// server numbers them like a PC.
std::optional<DeskKey> deskKeyOf(const QKeyEvent& event);

}  // namespace brivane
