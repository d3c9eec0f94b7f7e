// Converts property lists between CoreFoundation's objects and Brivane's values. Booleans are
// tested before numbers, as elsewhere in the system their class passes for both.
#include "Machines/Mac/CoreFoundation/CFProperty.h"

#include <vector>

#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

PropertyValue numberOf(CFNumberRef number) {
  if (CFNumberIsFloatType(number)) {
    double fraction = 0;
    CFNumberGetValue(number, kCFNumberFloat64Type, &fraction);
    return {fraction};
  }
  std::int64_t integer = 0;
  CFNumberGetValue(number, kCFNumberSInt64Type, &integer);
  return {integer};
}

PropertyValue dataOf(CFDataRef data) {
  const UInt8* const first = CFDataGetBytePtr(data);
  return {PropertyValue::Data{{first, first + CFDataGetLength(data)}}};
}

PropertyValue arrayOf(CFArrayRef array) {
  PropertyValue::Array values;
  for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
    values.push_back(propertyOf(CFArrayGetValueAtIndex(array, i)));
  }
  return {std::move(values)};
}

PropertyValue dictionaryOf(CFDictionaryRef dictionary) {
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> objects(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), objects.data());
  PropertyValue::Dictionary values;
  for (std::size_t i = 0; i < count; ++i) {
    if (CFGetTypeID(keys[i]) != CFStringGetTypeID()) continue;
    values[textOf(static_cast<CFStringRef>(keys[i]))] = propertyOf(objects[i]);
  }
  return {std::move(values)};
}

/// Makes the object for each type of content.
struct Maker {
  CFReference<CFTypeRef> operator()(const PropertyValue::Unsupported&) const { return {}; }
  CFReference<CFTypeRef> operator()(bool flag) const {
    return CFReference(CFRetain(flag ? kCFBooleanTrue : kCFBooleanFalse));
  }
  CFReference<CFTypeRef> operator()(std::int64_t integer) const {
    return owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &integer));
  }
  CFReference<CFTypeRef> operator()(double fraction) const {
    return owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &fraction));
  }
  CFReference<CFTypeRef> operator()(const std::string& text) const {
    return owned(makeCFText(text).release());
  }
  CFReference<CFTypeRef> operator()(const PropertyValue::Date& date) const {
    return owned(CFDateCreate(kCFAllocatorDefault, date.seconds));
  }
  CFReference<CFTypeRef> operator()(const PropertyValue::Data& data) const {
    return owned(CFDataCreate(kCFAllocatorDefault, data.bytes.data(),
                              static_cast<CFIndex>(data.bytes.size())));
  }
  CFReference<CFTypeRef> operator()(const PropertyValue::Array& array) const {
    std::vector<CFReference<CFTypeRef>> objects;
    std::vector<const void*> pointers;
    for (const PropertyValue& value : array) add(objects, pointers, makeCFProperty(value));
    return owned(CFArrayCreate(kCFAllocatorDefault, pointers.data(),
                               static_cast<CFIndex>(pointers.size()), &kCFTypeArrayCallBacks));
  }
  CFReference<CFTypeRef> operator()(const PropertyValue::Dictionary& dictionary) const {
    std::vector<CFReference<CFTypeRef>> objects;
    std::vector<const void*> keys;
    std::vector<const void*> values;
    for (const auto& [name, value] : dictionary) {
      auto key = (*this)(name);
      auto object = makeCFProperty(value);
      if (!key || !object) continue;
      add(objects, keys, std::move(key));
      add(objects, values, std::move(object));
    }
    return owned(CFDictionaryCreate(
        kCFAllocatorDefault, keys.data(), values.data(), static_cast<CFIndex>(keys.size()),
        &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  }

 private:
  static CFReference<CFTypeRef> owned(CFTypeRef object) { return CFReference(object); }

  static void add(std::vector<CFReference<CFTypeRef>>& objects, std::vector<const void*>& pointers,
                  CFReference<CFTypeRef> object) {
    if (!object) return;
    pointers.push_back(object.get());
    objects.push_back(std::move(object));
  }
};

}  // namespace

PropertyValue propertyOf(CFTypeRef object) {
  if (object == nullptr) return {};
  const CFTypeID kind = CFGetTypeID(object);
  if (kind == CFBooleanGetTypeID()) {
    return {CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0};
  }
  if (kind == CFNumberGetTypeID()) return numberOf(static_cast<CFNumberRef>(object));
  if (kind == CFStringGetTypeID()) return {textOf(static_cast<CFStringRef>(object))};
  if (kind == CFArrayGetTypeID()) return arrayOf(static_cast<CFArrayRef>(object));
  if (kind == CFDictionaryGetTypeID()) return dictionaryOf(static_cast<CFDictionaryRef>(object));
  if (kind == CFDataGetTypeID()) return dataOf(static_cast<CFDataRef>(object));
  if (kind == CFDateGetTypeID()) {
    return {PropertyValue::Date{CFDateGetAbsoluteTime(static_cast<CFDateRef>(object))}};
  }
  return {};
}

CFReference<CFTypeRef> makeCFProperty(const PropertyValue& value) {
  return std::visit(Maker{}, value.content);
}

}  // namespace brivane
