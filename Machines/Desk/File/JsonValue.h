#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brivane {

struct JsonMember;

/// A JSON text as it was written: members keep their order, and every whole number from -2^63 to
/// 2^64 - 1 keeps its value. `std::uint64_t` holds only what is too large for `std::int64_t`.
struct JsonValue {
  using Array = std::vector<JsonValue>;
  using Object = std::vector<JsonMember>;

  std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array,
               Object>
      content;

  bool isNull() const { return std::holds_alternative<std::nullptr_t>(content); }
};

struct JsonMember {
  std::string key;
  JsonValue value;
};

/// The text on one line: control characters as JSON writes them.
std::string visibleText(std::string_view text);

/// The path of a member, with control characters made visible. The path of the whole text is "".
std::string childPath(const std::string& parent, std::string_view key);

/// The value as JSON without blanks, on one line, members in the order they have.
std::string jsonText(const JsonValue& value);

/// The value for an error message: "a list", "an object", or the start of its JSON.
std::string jsonExcerpt(const JsonValue& value);

/// A 64-bit hash of the value, independent of blanks and of the order of members. Never 0.
std::uint64_t jsonFingerprint(const JsonValue& value);

}  // namespace brivane
