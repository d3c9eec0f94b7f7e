#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// The kernel's code (linux/input-event-codes.h) of the key with this virtual key code; an X server
/// with a PC's keyboard counts the same keys from 8. Nothing for codes that no key of a PC has. F20
/// is the code of F24: desktops take F20's own for muting the microphone.
std::optional<std::uint16_t> evdevCodeOfKey(std::uint32_t keyCode);

/// The other way round.
std::optional<std::uint16_t> keyOfEvdevCode(std::uint32_t evdevCode);

/// An X server with a PC's keyboard counts evdev's key codes from here.
inline constexpr std::uint32_t firstXKeyCode = 8;

}  // namespace brivane
