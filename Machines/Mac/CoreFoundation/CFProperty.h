#pragma once

#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {

/// The value that a property-list object stands for; `Unsupported` for an object of another kind
/// and for null.
PropertyValue propertyOf(CFTypeRef object);

/// A new object that stands for the value; empty for `Unsupported` and for text that is no UTF-8,
/// which containers leave out.
CFReference<CFTypeRef> makeCFProperty(const PropertyValue& value);

}  // namespace brivane
