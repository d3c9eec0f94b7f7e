#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brivane {

/// The shortest decimal text, without an exponent, that reads back to the same double.
std::string shortestDecimal(double value);

/// `value` with no digits after the point, rounded as printf's "%.0f" rounds (halves to even).
std::string wholeDecimal(double value);

/// The text as a signed decimal integer: at most one plus or minus sign, then one or more ASCII
/// digits and nothing else. Nothing for any other text and for values outside 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// left + right and -value; an overflow is a programming error and aborts.
std::int64_t checkedSum(std::int64_t left, std::int64_t right);
std::int64_t checkedNegation(std::int64_t value);

}  // namespace brivane
