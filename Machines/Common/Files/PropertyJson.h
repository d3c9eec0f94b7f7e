#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// JSON and property values, kind for kind. What JSON has no kind for is told as `TaggedProperty`
/// does it; null is `PropertyValue::Unsupported`, and whole numbers beyond 64 signed bits become
/// fractions. Bytes that are no UTF-8 are written as U+FFFD.

/// In one line.
std::string jsonOfProperty(const PropertyValue& value);

/// An object that is a dictionary whatever its keys, such as a whole file, in indented lines.
std::string jsonOfDictionary(const PropertyValue::Dictionary& dictionary);

/// What is wrong with a text that is no such object, is nested deeper than 32 levels or holds a
/// number that is too large for a fraction.
struct JsonProblem {
  std::string reason;
};
std::variant<PropertyValue::Dictionary, JsonProblem> dictionaryFromJson(std::string_view text);

}  // namespace brivane
