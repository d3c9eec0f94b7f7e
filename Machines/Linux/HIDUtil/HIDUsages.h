#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// A key code of the kernel's input layer (linux/input-event-codes.h).
using KeyCode = std::uint32_t;

/// The kernel's key code for a brightness key of the HID consumer page, by its usage (page in the
/// upper 32 bits). Nothing for other usages: Linux doesn't have the vendor pages' brightness keys.
std::optional<KeyCode> brightnessKeyCode(std::uint64_t usage);

/// The key code for a relay key, F13 to F20 of the HID keyboard page; nothing for other usages. F20
/// becomes F24, as desktops use F20's code for muting the microphone.
std::optional<KeyCode> relayKeyCode(std::uint64_t usage);

}  // namespace brivane
