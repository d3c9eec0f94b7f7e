#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <functional>
#include <string>
#include <vector>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane::fake {

/// The kinds of objects, as `CFGetTypeID` tells them.
enum Kind : CFTypeID {
  stringKind = 7,
  dictionaryKind = 18,
  arrayKind = 19,
  dataKind = 20,
  booleanKind = 21,
  numberKind = 22,
  urlKind = 29,
  dateKind = 42,
  /// Whatever no property list has.
  otherKind = 100,
};

/// An object of the fake CoreFoundation. Objects stay in memory when they are released for the last
/// time, so that whoever uses one then is found out: the process ends with a message.
struct FakeObject {
  CFTypeID kind = otherKind;
  long references = 1;
  /// Of everything but arrays and dictionaries.
  PropertyValue value;
  /// Retained: an array's values, or a dictionary's keys and values by turns.
  std::vector<CFTypeRef> items;
  /// Called when the last reference is given back.
  std::function<void()> whenGone;
};

/// A new object with one reference, the caller's.
FakeObject* makeObject(CFTypeID kind, PropertyValue value = {});
/// The same for a property list.
CFTypeRef makePropertyList(const PropertyValue& value);

/// The object, which must be one and live; constant strings are none.
FakeObject& objectAt(CFTypeRef reference);

/// What the object or constant string stands for.
PropertyValue valueOf(CFTypeRef reference);
std::string stringOf(CFStringRef text);

/// Objects that somebody still holds.
std::size_t liveObjects();
/// References to constants that somebody has retained and not released.
long heldConstants();

}  // namespace brivane::fake
