// Doubles are written with printf and not with std::to_chars, which Apple's library has for them
// only from macOS 13.3 on. printf takes its decimal point from the locale: only its digits are
// used.

#include "BrivaneCore/Support/Numbers.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

// The whole number that the digits say, times 10 to the exponent.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

std::string printed(const char* format, int precision, double value) {
  const int length = std::snprintf(nullptr, 0, format, precision, value);
  std::string text(static_cast<std::size_t>(length), ' ');
  std::snprintf(text.data(), text.size() + 1, format, precision, value);
  return text;
}

Decimal rounded(double size, int count) {
  const std::string text = printed("%.*e", count - 1, size);
  const std::size_t letter = text.find('e');
  Decimal decimal{text.substr(0, letter), std::atoi(text.c_str() + letter + 1) - (count - 1)};
  std::erase_if(decimal.digits, [](char symbol) { return symbol < '0' || symbol > '9'; });
  return decimal;
}

bool readsBack(const Decimal& decimal, double size) {
  const std::string text = decimal.digits + "e" + std::to_string(decimal.exponent);
  return std::strtod(text.c_str(), nullptr) == size;
}

// Below a power of two doubles lie twice as close, so that there the nearest short decimal may read
// back as the double below while the next one above reads back as it should. That one never ends in
// a zero: it would have been found with fewer digits.
Decimal shortest(double size) {
  for (int count = 1; count < std::numeric_limits<double>::max_digits10; ++count) {
    Decimal decimal = rounded(size, count);
    if (readsBack(decimal, size)) return decimal;
    ++decimal.digits.back();
    if (decimal.digits.back() <= '9' && readsBack(decimal, size)) return decimal;
  }
  return rounded(size, std::numeric_limits<double>::max_digits10);
}

std::string withoutExponent(const Decimal& decimal) {
  const auto [digits, exponent] = decimal;
  if (exponent >= 0) return digits + std::string(static_cast<std::size_t>(exponent), '0');
  const auto afterPoint = static_cast<std::size_t>(-exponent);
  if (afterPoint >= digits.size()) {
    return "0." + std::string(afterPoint - digits.size(), '0') + digits;
  }
  return std::string(digits).insert(digits.size() - afterPoint, ".");
}

std::string withExponent(const Decimal& decimal) {
  std::string text = decimal.digits;
  const int exponent = decimal.exponent + static_cast<int>(text.size()) - 1;
  if (text.size() > 1) text.insert(1, ".");
  const std::string size = std::to_string(std::abs(exponent));
  return text + (exponent < 0 ? "e-" : "e+") + (size.size() < 2 ? "0" : "") + size;
}

std::string signOf(double value) {
  return std::signbit(value) ? "-" : "";
}

}  // namespace

std::string shortestDecimal(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return signOf(value) + "inf";
  return signOf(value) + withoutExponent(shortest(std::abs(value)));
}

std::string shortestFloatingPoint(double value) {
  constexpr double largestWithAllDigits = 9007199254740992;  // 2 to the 53rd
  constexpr double smallestWithAllDigits = 0.0001;
  if (!std::isfinite(value)) return shortestDecimal(value);
  const double size = std::abs(value);
  if (size != 0 && (size < smallestWithAllDigits || size > largestWithAllDigits)) {
    return signOf(value) + withExponent(shortest(size));
  }
  const std::string text = shortestDecimal(value);
  return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string wholeDecimal(double value) {
  return printed("%.*f", 0, value);
}

std::string hexadecimal(std::uint64_t number, std::size_t digits) {
  const auto needed = (static_cast<std::size_t>(std::bit_width(number)) + 3) / 4;
  std::string text(std::max(digits, needed), '0');
  for (auto place = text.rbegin(); number != 0; number >>= 4U) {
    *place++ = "0123456789abcdef"[number & 0xFU];
  }
  return text;
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
