#pragma once

#include <optional>

#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// The value as a property list, type for type; dates and raw data are written as in
/// `TaggedProperty`. Nothing when any part is null or a number beyond 63 bits: a property list can
/// hold neither.
std::optional<PropertyValue> propertyFromJsonValue(const JsonValue& value);

}  // namespace brivane
