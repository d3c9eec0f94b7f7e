#pragma once

#include <cstdint>

namespace brivane {

/// Virtual key codes of the keys that tests press, and Carbon's bits for the modifiers with them.
constexpr std::uint16_t keyEscape = 53;
constexpr std::uint16_t keyF5 = 96;
constexpr std::uint16_t downArrow = 125;
constexpr std::uint16_t upArrow = 126;
constexpr std::uint32_t controlAndOption = 6144;

}  // namespace brivane
