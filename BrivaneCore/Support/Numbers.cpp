#include "BrivaneCore/Support/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

// The longest doubles have 309 digits before the point, the smallest 1074 after it.
constexpr std::size_t longestFixedDouble = 1100;
// A sign, 17 digits, a point, and an exponent of three digits with its letter and sign.
constexpr std::size_t longestScientificDouble = 24;

}  // namespace

std::string shortestDecimal(double value) {
  std::array<char, longestFixedDouble> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return {text.data(), end.ptr};
}

std::string shortestFloatingPoint(double value) {
  constexpr double largestWithAllDigits = 9007199254740992;  // 2 to the 53rd
  constexpr double smallestWithAllDigits = 0.0001;
  if (std::isnan(value)) return "nan";
  const double size = std::abs(value);
  if (size == 0 || (size >= smallestWithAllDigits && size <= largestWithAllDigits)) {
    const std::string text = shortestDecimal(value);
    return text.find('.') == std::string::npos ? text + ".0" : text;
  }
  std::array<char, longestScientificDouble> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific);
  return {text.data(), end.ptr};
}

std::string wholeDecimal(double value) {
  std::array<char, longestFixedDouble> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 0);
  return {text.data(), end.ptr};
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
  // from_chars takes a minus sign itself but no plus, and "+-4" must not slip through.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::int64_t cutOff(double number) {
  constexpr double limit = 9223372036854775808.0;  // 2 to the 63rd
  if (std::isnan(number)) return 0;
  if (number >= limit) return std::numeric_limits<std::int64_t>::max();
  if (number < -limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(number);
}

std::int64_t checkedSum(std::int64_t left, std::int64_t right) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(left, right, &sum)) fatal("a sum of levels left the 64-bit range");
  return sum;
}

std::int64_t checkedNegation(std::int64_t value) {
  if (value == std::numeric_limits<std::int64_t>::min()) {
    fatal("the negation of a level left the 64-bit range");
  }
  return -value;
}

}  // namespace brivane
