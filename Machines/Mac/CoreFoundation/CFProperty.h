#pragma once

#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {

/// The value of a property-list object; `Unsupported` for objects of other types and null.
PropertyValue propertyOf(CFTypeRef object);

/// A new property-list object; empty for `Unsupported` and for text that is no UTF-8. Containers
/// leave such values out.
CFReference<CFTypeRef> makeCFProperty(const PropertyValue& value);

}  // namespace brivane
