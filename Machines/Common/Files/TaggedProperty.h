#pragma once

#include "BrivaneCore/Support/PropertyValue.h"

// How property values that JSON has no kind for are kept in JSON: a date as {"$date": seconds}, raw
// data as {"$data": "0a1b…"}, two hexadecimal digits a byte. A dictionary of its own that would be
// taken for one (a single key that begins with "$") gets a second "$", so nothing is ever mistaken.

namespace brivane {

PropertyValue::Dictionary tagged(PropertyValue::Date date);
PropertyValue::Dictionary tagged(const PropertyValue::Data& data);
PropertyValue::Dictionary tagged(PropertyValue::Dictionary dictionary);

/// What a dictionary from a JSON text stands for: a date, raw data, or a dictionary.
PropertyValue untagged(PropertyValue::Dictionary dictionary);

}  // namespace brivane
