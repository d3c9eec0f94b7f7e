#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// A key code of the kernel's input layer (linux/input-event-codes.h).
using KeyCode = std::uint32_t;

/// The key code that the kernel gives a brightness key of the HID consumer page, by its usage as
/// key mappings write it (page in the upper 32 bits). Nothing for every other usage: brightness
/// keys that vendors put on pages of their own don't exist under Linux.
std::optional<KeyCode> brightnessKeyCode(std::uint64_t usage);

/// The key code that stands for a relay key F13 to F20 of the HID keyboard page. F20 is the code of
/// F24: desktops take F20's own for muting the microphone. Nothing for every other usage.
std::optional<KeyCode> relayKeyCode(std::uint64_t usage);

}  // namespace brivane
