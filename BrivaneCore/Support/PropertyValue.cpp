#include "BrivaneCore/Support/PropertyValue.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
  const auto start = text.find_first_not_of(" \t");
  return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

std::int64_t leadingInteger(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    return text.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                                 : std::numeric_limits<std::int64_t>::max();
  }
  return value;
}

bool isAffirmative(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (leadingInteger(text) != 0) return true;
  return !text.empty() && std::string_view("yYtT").find(text.front()) != std::string_view::npos;
}

}  // namespace

std::optional<std::uint32_t> PropertyValue::number32() const {
  if (const auto* integer = std::get_if<std::int64_t>(&content)) {
    return static_cast<std::uint32_t>(*integer);
  }
  if (const auto* fraction = std::get_if<double>(&content)) {
    return static_cast<std::uint32_t>(cutOff(*fraction));
  }
  return std::nullopt;
}

std::optional<std::int64_t> PropertyValue::exactInteger() const {
  if (const auto* boolean = std::get_if<bool>(&content)) return *boolean ? 1 : 0;
  if (const auto* integer = std::get_if<std::int64_t>(&content)) return *integer;
  const auto* fraction = std::get_if<double>(&content);
  constexpr double twoToThe63rd = 9223372036854775808.0;
  if (!fraction || !(*fraction >= -twoToThe63rd && *fraction < twoToThe63rd) ||
      std::trunc(*fraction) != *fraction) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(*fraction);
}

std::int64_t PropertyValue::asInteger() const {
  if (const auto* boolean = std::get_if<bool>(&content)) return *boolean ? 1 : 0;
  if (const auto* integer = std::get_if<std::int64_t>(&content)) return *integer;
  if (const auto* fraction = std::get_if<double>(&content)) return cutOff(*fraction);
  if (const auto* string = text()) return leadingInteger(*string);
  return 0;
}

bool PropertyValue::asBoolean() const {
  if (const auto* boolean = std::get_if<bool>(&content)) return *boolean;
  if (const auto* fraction = std::get_if<double>(&content)) return *fraction != 0;
  if (const auto* string = text()) return isAffirmative(*string);
  return asInteger() != 0;
}

}  // namespace brivane
