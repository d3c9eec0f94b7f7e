#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brivane {

/// A function key that keyboards don't have, to which the brightness keys can be relayed.
struct RelayKey {
  /// Usage on the HID keyboard page (page 7).
  std::uint32_t hidUsage = 0;
  /// The virtual key code under which the key arrives as a hotkey.
  std::uint32_t virtualKeyCode = 0;
  /// As the log names it.
  std::string_view name;

  bool operator==(const RelayKey&) const = default;
};

/// Usages by the HID usage tables for USB.
inline constexpr std::array<RelayKey, 8> relayKeys = {{
    {0x68, 105, "F13"},
    {0x69, 107, "F14"},
    {0x6A, 113, "F15"},
    {0x6B, 106, "F16"},
    {0x6C, 64, "F17"},
    {0x6D, 79, "F18"},
    {0x6E, 80, "F19"},
    {0x6F, 90, "F20"},
}};

/// The relay key that arrives under the code, if one does.
std::optional<RelayKey> relayKeyForVirtualKeyCode(std::uint32_t virtualKeyCode);

}  // namespace brivane
