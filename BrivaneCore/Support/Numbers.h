#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brivane {

/// The shortest decimal text, without an exponent, that reads back to the same double.
std::string shortestDecimal(double value);

/// The shortest decimal text that reads back to the same double and can't be mistaken for an
/// integer: "0.0", "1732190000.123"; with an exponent above 2 to the 53rd and below 0.0001:
/// "1e+16", "1.5e-05"; "nan", "inf" and "-inf".
std::string shortestFloatingPoint(double value);

/// `value` with no digits after the point, rounded as printf's "%.0f" rounds (halves to even).
std::string wholeDecimal(double value);

/// In lower case, with zeros in front where there are fewer than `digits` digits.
std::string hexadecimal(std::uint64_t number, std::size_t digits);

/// The text as a signed decimal integer: at most one plus or minus sign, then one or more ASCII
/// digits and nothing else. Nothing for any other text and for values outside 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// `number` without its fraction, limited to what 64 bits hold; 0 for what is no number.
std::int64_t cutOff(double number);

/// left + right and -value; an overflow is a programming error and aborts.
std::int64_t checkedSum(std::int64_t left, std::int64_t right);
std::int64_t checkedNegation(std::int64_t value);

}  // namespace brivane
