#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// A key as the HID layer names it: usage page in the upper, usage in the lower 32 bits.
using HIDUsage = std::uint64_t;

/// Converts between a virtual key code and a usage on the HID keyboard page (7); nothing for codes
/// and usages without an ordinary key.
std::optional<HIDUsage> usageOfKey(std::uint16_t keyCode);
std::optional<std::uint16_t> keyOfUsage(HIDUsage usage);

/// The hotkey modifier bit (256 command, 512 shift, 2048 option, 4096 control) of a modifier key's
/// virtual key code; 0 for other keys.
std::uint32_t modifierOfKey(std::uint16_t keyCode);

enum class BrightnessKey { up, down };

/// The brightness key with this usage, on any kind of keyboard.
std::optional<BrightnessKey> brightnessKeyOfUsage(HIDUsage usage);

}  // namespace brivane
