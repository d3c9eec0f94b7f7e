#pragma once

#include <optional>

#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// The value as a property list holds it, kind for kind, dates and raw data as `TaggedProperty` has
/// them. Nothing when it holds null or a number
/// beyond 63 bits anywhere: neither has a place in a property list.
std::optional<PropertyValue> propertyFromJsonValue(const JsonValue& value);

}  // namespace brivane
