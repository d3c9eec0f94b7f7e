#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace brivane {

/// "51 82 01": how notes of bus calls write bytes.
inline std::string hexadecimal(std::span<const std::uint8_t> bytes) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace brivane
