#pragma once

#include <cstdint>

namespace brivane {

/// The key code as the keyboard knows it. Settings hold key codes in 32 bits, but no key has a code
/// above 16 bits; such a code is a programming error and aborts.
std::uint16_t keyboardKeyCode(std::uint32_t keyCode);

}  // namespace brivane
