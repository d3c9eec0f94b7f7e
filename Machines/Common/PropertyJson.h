#pragma once

#include <nlohmann/json_fwd.hpp>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// JSON and property values, kind for kind. What JSON has no kind for is told as `TaggedProperty`
/// does it; null is `PropertyValue::Unsupported`, and whole numbers beyond 64 signed bits become
/// fractions.
PropertyValue propertyFromJson(const nlohmann::json& json);
nlohmann::json jsonFromProperty(const PropertyValue& value);

/// The same for an object that is a dictionary whatever its keys, such as a whole file.
PropertyValue::Dictionary dictionaryFromJson(const nlohmann::json& object);
nlohmann::json jsonFromDictionary(const PropertyValue::Dictionary& dictionary);

}  // namespace brivane
