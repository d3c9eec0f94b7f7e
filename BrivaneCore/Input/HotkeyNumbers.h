#pragma once

#include <cstdint>

namespace brivane {

/// The numbers under which the program's hotkeys are registered.
namespace hotkeyNumber {
inline constexpr std::uint32_t userUp = 1;
inline constexpr std::uint32_t userDown = 2;
/// Plain F2 and F1.
inline constexpr std::uint32_t functionKeyUp = 3;
inline constexpr std::uint32_t functionKeyDown = 4;
inline constexpr std::uint32_t relayUp = 5;
inline constexpr std::uint32_t relayDown = 6;
/// The relay's keys with Shift.
inline constexpr std::uint32_t relayUpFine = 7;
inline constexpr std::uint32_t relayDownFine = 8;
}  // namespace hotkeyNumber

}  // namespace brivane
