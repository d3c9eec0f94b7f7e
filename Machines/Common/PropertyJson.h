#pragma once

#include <nlohmann/json_fwd.hpp>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// JSON and property values, kind for kind; null is `PropertyValue::Unsupported`, and whole numbers
/// beyond 64 signed bits become fractions.
PropertyValue propertyFromJson(const nlohmann::json& json);
nlohmann::json jsonFromProperty(const PropertyValue& value);

}  // namespace brivane
