#pragma once

#include "BrivaneCore/Support/PropertyValue.h"

// Property values of types that JSON lacks: a date as {"$date": seconds}, raw data as {"$data":
// "0a1b…"}, two hexadecimal digits a byte. An ordinary dictionary that looks like one (a single key
// that begins with "$") gets a second "$".

namespace brivane {

PropertyValue::Dictionary tagged(PropertyValue::Date date);
PropertyValue::Dictionary tagged(const PropertyValue::Data& data);
PropertyValue::Dictionary tagged(PropertyValue::Dictionary dictionary);

/// The value of a dictionary from JSON: a date, raw data, or a dictionary.
PropertyValue untagged(PropertyValue::Dictionary dictionary);

}  // namespace brivane
