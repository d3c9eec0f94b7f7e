#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brivane {

/// A value as the platform's registries and settings hold it: a property list. Text is UTF-8.
/// `Unsupported` stands for a present value of a kind that Brivane never reads (a date, raw data).
struct PropertyValue {
  struct Unsupported {
    bool operator==(const Unsupported&) const = default;
  };
  using Array = std::vector<PropertyValue>;
  using Dictionary = std::map<std::string, PropertyValue, std::less<>>;

  std::variant<Unsupported, bool, std::int64_t, double, std::string, Array, Dictionary> content;

  bool operator==(const PropertyValue&) const = default;

  /// The text, or nothing for any other kind.
  const std::string* text() const { return std::get_if<std::string>(&content); }
  /// The dictionary, or nothing for any other kind.
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&content); }
  /// The low 32 bits of a number (integer or fraction, cut off); nothing for any other kind.
  std::optional<std::uint32_t> number32() const;

  /// The settings' conversion to an integer: numbers are cut off, Booleans are 0 or 1, text gives
  /// the integer it begins with; everything else is 0.
  std::int64_t asInteger() const;
  /// The settings' conversion to a Boolean: a number other than 0, or text that says yes ("YES",
  /// "true", any case, or a number other than 0); everything else is false.
  bool asBoolean() const;
};

}  // namespace brivane
