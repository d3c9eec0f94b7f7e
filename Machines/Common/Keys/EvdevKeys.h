#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// The kernel's key code (linux/input-event-codes.h) for a virtual key code; nothing for keys that
/// a PC lacks. F20 becomes F24, as desktops use F20's code for muting the microphone.
std::optional<std::uint16_t> evdevCodeOfKey(std::uint32_t keyCode);

/// The reverse.
std::optional<std::uint16_t> keyOfEvdevCode(std::uint32_t evdevCode);

/// X's key codes on a PC's keyboard are evdev's plus this.
inline constexpr std::uint32_t firstXKeyCode = 8;

}  // namespace brivane
