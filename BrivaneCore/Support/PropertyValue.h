#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brivane {

/// A value as the platform's registries and settings hold it: a property list. Text is UTF-8.
/// Brivane reads neither dates nor raw data, but hands them on as they are; `Unsupported` stands
/// for a present value of a kind that no property list has.
struct PropertyValue {
  struct Unsupported {
    bool operator==(const Unsupported&) const = default;
  };
  struct Date {
    /// From the start of the year 2001 in UTC, without leap seconds; negative before it.
    double seconds = 0;
    bool operator==(const Date&) const = default;
  };
  struct Data {
    std::vector<std::uint8_t> bytes;
    bool operator==(const Data&) const = default;
  };
  using Array = std::vector<PropertyValue>;
  using Dictionary = std::map<std::string, PropertyValue, std::less<>>;

  std::variant<Unsupported, bool, std::int64_t, double, std::string, Array, Dictionary, Date, Data>
      content;

  bool operator==(const PropertyValue&) const = default;

  /// The text, or nothing for any other kind.
  const std::string* text() const { return std::get_if<std::string>(&content); }
  /// The dictionary, or nothing for any other kind.
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&content); }
  /// The low 32 bits of a number (integer or fraction, cut off); nothing for any other kind.
  std::optional<std::uint32_t> number32() const;

  /// The number as the integer that it is exactly: integers, fractions whose value is whole, and
  /// Booleans as 0 or 1. Nothing for any other number, for values outside 64 bits and other kinds.
  std::optional<std::int64_t> exactInteger() const;

  /// The settings' conversion to an integer: numbers are cut off, Booleans are 0 or 1, text gives
  /// the integer it begins with; everything else is 0.
  std::int64_t asInteger() const;
  /// The settings' conversion to a Boolean: a number other than 0, or text that says yes ("YES",
  /// "true", any case, or a number other than 0); everything else is false.
  bool asBoolean() const;
};

}  // namespace brivane
