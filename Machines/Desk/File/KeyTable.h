#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// A key as the HID layer names it: usage page in the upper, usage in the lower 32 bits.
using HIDUsage = std::uint64_t;

/// The usage on the keyboard page (7) of the key that has this virtual key code, and back; nothing
/// for codes and usages that no ordinary key has.
std::optional<HIDUsage> usageOfKey(std::uint16_t keyCode);
std::optional<std::uint16_t> keyOfUsage(HIDUsage usage);

/// The modifier bit of a hotkey (256 command, 512 shift, 2048 option, 4096 control) that the key
/// with this virtual key code stands for; 0 for other keys.
std::uint32_t modifierOfKey(std::uint16_t keyCode);

enum class BrightnessKey { up, down };

/// The brightness key that a usage stands for, whichever kind of keyboard sends it.
std::optional<BrightnessKey> brightnessKeyOfUsage(HIDUsage usage);

}  // namespace brivane
