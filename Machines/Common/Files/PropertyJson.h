#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// Converts property values to JSON and back, type for type. Types that JSON lacks are written as
/// in `TaggedProperty`; null is `PropertyValue::Unsupported`; integers beyond 64 signed bits become
/// doubles. Invalid UTF-8 is written as U+FFFD.

/// On one line.
std::string jsonOfProperty(const PropertyValue& value);

/// The dictionary as an object, such as a whole file, in indented lines; no key is taken for a tag.
std::string jsonOfDictionary(const PropertyValue::Dictionary& dictionary);

/// Why a text is no such object, is nested deeper than 32 levels, or holds a number too large for a
/// double.
struct JsonProblem {
  std::string reason;
};
std::variant<PropertyValue::Dictionary, JsonProblem> dictionaryFromJson(std::string_view text);

}  // namespace brivane
