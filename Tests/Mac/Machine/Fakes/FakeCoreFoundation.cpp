// CoreFoundation's objects with their reference counts, as the Mac's code sees them. Everything is
// behind one lock, because displays are asked about on two threads.
#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

/// The compiler makes constant strings of this class; a fake Foundation may bring its own.
extern "C" __attribute__((weak)) int __CFConstantStringClassReference[64] = {};

namespace brivane::fake {
namespace {

/// Numbers of half the size, which only a mistake makes.
constexpr auto sInt32Type = static_cast<CFNumberType>(3);

/// What the compiler makes of CFSTR.
struct ConstantString {
  const void* isa;
  int flags;
  const char* bytes;
  long length;
};

struct Heap {
  std::recursive_mutex mutex;
  std::map<const void*, std::unique_ptr<FakeObject>> objects;
  std::size_t live = 0;
  /// How often constants are retained: they never go, but whoever releases one must have retained
  /// it.
  std::map<const void*, long> constants;
};

Heap& heap() {
  static Heap all;
  return all;
}

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "CoreFoundation: %s\n", what);
  std::abort();
}

bool isConstantString(CFTypeRef reference) {
  return static_cast<const ConstantString*>(reference)->isa == __CFConstantStringClassReference;
}

/// Null for a constant string, which belongs to nobody.
FakeObject* find(CFTypeRef reference) {
  const std::lock_guard lock(heap().mutex);
  if (reference == nullptr) fail("null was used as an object");
  const auto found = heap().objects.find(reference);
  if (found == heap().objects.end()) {
    if (!isConstantString(reference)) fail("something that is no object was used as one");
    return nullptr;
  }
  if (found->second->references == 0) fail("an object was used after its last release");
  return found->second.get();
}

std::size_t utf16Length(const std::string& utf8) {
  std::size_t units = 0;
  for (const char byte : utf8) {
    const auto bits = static_cast<unsigned char>(byte);
    if ((bits & 0xC0) != 0x80) units += bits >= 0xF0 ? 2 : 1;
  }
  return units;
}

/// As far as tests need it: continuation bytes where they belong.
bool isUTF8(const std::string& bytes) {
  for (std::size_t i = 0; i < bytes.size();) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const std::size_t length = first < 0x80             ? 1
                               : (first & 0xE0) == 0xC0 ? 2
                               : (first & 0xF0) == 0xE0 ? 3
                               : (first & 0xF8) == 0xF0 ? 4
                                                        : 0;
    if (length == 0 || i + length > bytes.size()) return false;
    for (std::size_t k = 1; k < length; ++k) {
      if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return false;
    }
    i += length;
  }
  return true;
}

std::string utf8From(const UniChar* units, CFIndex count) {
  std::string text;
  for (CFIndex i = 0; i < count; ++i) {
    std::uint32_t point = units[i];
    if (point >= 0xD800 && point < 0xDC00 && i + 1 < count) {
      point = 0x10000 + ((point - 0xD800) << 10) + (units[++i] - 0xDC00U);
    }
    if (point < 0x80) {
      text += static_cast<char>(point);
      continue;
    }
    const int continuations = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    const int marks[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(static_cast<std::uint32_t>(marks[continuations]) |
                              (point >> (6 * continuations)));
    for (int k = continuations - 1; k >= 0; --k) {
      text += static_cast<char>(0x80 | ((point >> (6 * k)) & 0x3F));
    }
  }
  return text;
}

CFTypeID kindOf(const PropertyValue& value) {
  constexpr CFTypeID kinds[] = {otherKind, booleanKind,    numberKind, numberKind, stringKind,
                                arrayKind, dictionaryKind, dateKind,   dataKind};
  return kinds[value.content.index()];
}

/// The two Booleans are always there and belong to nobody.
FakeObject* boolean(bool flag) {
  static FakeObject yes{booleanKind, 1, {true}, {}, {}};
  static FakeObject no{booleanKind, 1, {false}, {}, {}};
  return flag ? &yes : &no;
}

bool isBoolean(CFTypeRef reference) {
  return reference == boolean(true) || reference == boolean(false);
}

bool isConstant(CFTypeRef reference) {
  return isBoolean(reference) || find(reference) == nullptr;
}

void releaseConstant(CFTypeRef reference) {
  if (heap().constants[reference]-- == 0) fail("a constant was released that nobody had retained");
}

CFTypeRef retained(CFTypeRef reference) {
  return CFRetain(reference);
}

}  // namespace

FakeObject* makeObject(CFTypeID kind, PropertyValue value) {
  const std::lock_guard lock(heap().mutex);
  auto object = std::make_unique<FakeObject>();
  object->kind = kind;
  object->value = std::move(value);
  FakeObject* const made = object.get();
  heap().objects.emplace(made, std::move(object));
  ++heap().live;
  return made;
}

CFTypeRef makePropertyList(const PropertyValue& value) {
  if (const auto* flag = std::get_if<bool>(&value.content)) return retained(boolean(*flag));
  FakeObject* const object = makeObject(kindOf(value), value);
  if (const auto* array = std::get_if<PropertyValue::Array>(&value.content)) {
    for (const auto& item : *array) object->items.push_back(makePropertyList(item));
  }
  if (const auto* dictionary = value.dictionary()) {
    for (const auto& [key, item] : *dictionary) {
      object->items.push_back(makePropertyList({key}));
      object->items.push_back(makePropertyList(item));
    }
  }
  return object;
}

FakeObject& objectAt(CFTypeRef reference) {
  if (isBoolean(reference)) return *static_cast<FakeObject*>(const_cast<void*>(reference));
  FakeObject* const object = find(reference);
  if (object == nullptr) fail("a constant string was used as another object");
  return *object;
}

std::string stringOf(CFStringRef text) {
  if (FakeObject* const object = find(text)) {
    const std::string* const bytes = object->value.text();
    if (bytes == nullptr) fail("another object was used as a string");
    return *bytes;
  }
  const auto* const constant = reinterpret_cast<const ConstantString*>(text);
  return {constant->bytes, static_cast<std::size_t>(constant->length)};
}

PropertyValue valueOf(CFTypeRef reference) {
  if (CFGetTypeID(reference) == stringKind) return {stringOf(static_cast<CFStringRef>(reference))};
  const FakeObject& object = objectAt(reference);
  if (object.kind == arrayKind) {
    PropertyValue::Array values;
    for (CFTypeRef item : object.items) values.push_back(valueOf(item));
    return {values};
  }
  if (object.kind == dictionaryKind) {
    PropertyValue::Dictionary values;
    for (std::size_t i = 0; i < object.items.size(); i += 2) {
      values[stringOf(static_cast<CFStringRef>(object.items[i]))] = valueOf(object.items[i + 1]);
    }
    return {values};
  }
  return object.value;
}

std::size_t liveObjects() {
  const std::lock_guard lock(heap().mutex);
  return heap().live;
}

long heldConstants() {
  const std::lock_guard lock(heap().mutex);
  long held = 0;
  for (const auto& [constant, references] : heap().constants) held += references;
  return held;
}

}  // namespace brivane::fake

using namespace brivane;        // NOLINT
using namespace brivane::fake;  // NOLINT

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(boolean(true));
const CFBooleanRef kCFBooleanFalse = reinterpret_cast<CFBooleanRef>(boolean(false));
const CFArrayCallBacks kCFTypeArrayCallBacks = {};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeRef CFRetain(CFTypeRef reference) {
  const std::lock_guard lock(heap().mutex);
  if (isConstant(reference)) {
    ++heap().constants[reference];
  } else {
    ++find(reference)->references;
  }
  return reference;
}

void CFRelease(CFTypeRef reference) {
  const std::lock_guard lock(heap().mutex);
  if (isConstant(reference)) return releaseConstant(reference);
  FakeObject* const object = find(reference);
  if (--object->references > 0) return;
  --heap().live;
  for (CFTypeRef item : std::exchange(object->items, {})) CFRelease(item);
  if (object->whenGone) object->whenGone();
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
  if (isBoolean(reference)) return booleanKind;
  const FakeObject* const object = find(reference);
  return object == nullptr ? CFTypeID{stringKind} : object->kind;
}

CFTypeID CFStringGetTypeID(void) {
  return stringKind;
}
CFTypeID CFBooleanGetTypeID(void) {
  return booleanKind;
}
CFTypeID CFNumberGetTypeID(void) {
  return numberKind;
}
CFTypeID CFDateGetTypeID(void) {
  return dateKind;
}
CFTypeID CFDataGetTypeID(void) {
  return dataKind;
}
CFTypeID CFArrayGetTypeID(void) {
  return arrayKind;
}
CFTypeID CFDictionaryGetTypeID(void) {
  return dictionaryKind;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean isExternal) {
  if (encoding != kCFStringEncodingUTF8 || isExternal) fail("a string was made of no UTF-8");
  std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  if (!isUTF8(text)) return nullptr;
  return reinterpret_cast<CFStringRef>(makeObject(stringKind, {std::move(text)}));
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* units, CFIndex length) {
  return reinterpret_cast<CFStringRef>(makeObject(stringKind, {utf8From(units, length)}));
}

CFIndex CFStringGetLength(CFStringRef text) {
  return static_cast<CFIndex>(utf16Length(stringOf(text)));
}

CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8, Boolean,
                         UInt8* buffer, CFIndex bufferLength, CFIndex* usedLength) {
  const std::string bytes = stringOf(text);
  const auto size = static_cast<CFIndex>(bytes.size());
  if (encoding != kCFStringEncodingUTF8 || range.location != 0 ||
      range.length != CFStringGetLength(text)) {
    fail("a part of a string was asked for");
  }
  if (buffer != nullptr) {
    if (bufferLength < size) fail("a buffer was too small for its string");
    std::memcpy(buffer, bytes.data(), bytes.size());
  }
  *usedLength = size;
  return range.length;
}

Boolean CFBooleanGetValue(CFBooleanRef value) {
  return value == kCFBooleanTrue;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  PropertyValue number;
  if (type == kCFNumberSInt64Type) {
    number = {*static_cast<const std::int64_t*>(value)};
  } else if (type == sInt32Type) {
    number = {std::int64_t{*static_cast<const std::int32_t*>(value)}};
  } else if (type == kCFNumberFloat64Type) {
    number = {*static_cast<const double*>(value)};
  } else {
    fail("a number of a kind that the fake hasn't got");
  }
  return reinterpret_cast<CFNumberRef>(makeObject(numberKind, number));
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  return std::holds_alternative<double>(objectAt(number).value.content);
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const PropertyValue& content = objectAt(number).value;
  const double* const fraction = std::get_if<double>(&content.content);
  const auto integer = fraction != nullptr ? static_cast<std::int64_t>(*fraction)
                                           : std::get<std::int64_t>(content.content);
  if (type == kCFNumberSInt64Type) {
    *static_cast<std::int64_t*>(value) = integer;
  } else if (type == kCFNumberFloat64Type) {
    *static_cast<double*>(value) = fraction != nullptr ? *fraction : static_cast<double>(integer);
  } else {
    fail("a number of a kind that the fake hasn't got");
  }
  return 1;
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime time) {
  return reinterpret_cast<CFDateRef>(makeObject(dateKind, {PropertyValue::Date{time}}));
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  return std::get<PropertyValue::Date>(objectAt(date).value.content).seconds;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  return reinterpret_cast<CFDataRef>(
      makeObject(dataKind, {PropertyValue::Data{{bytes, bytes + length}}}));
}

CFIndex CFDataGetLength(CFDataRef data) {
  return static_cast<CFIndex>(
      std::get<PropertyValue::Data>(objectAt(data).value.content).bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return std::get<PropertyValue::Data>(objectAt(data).value.content).bytes.data();
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
  if (callBacks != &kCFTypeArrayCallBacks) fail("an array doesn't retain its values");
  FakeObject* const array = makeObject(arrayKind);
  for (CFIndex i = 0; i < count; ++i) array->items.push_back(CFRetain(values[i]));
  return reinterpret_cast<CFArrayRef>(array);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(objectAt(array).items.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return objectAt(array).items.at(static_cast<std::size_t>(index));
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    fail("a dictionary doesn't retain its content");
  }
  FakeObject* const dictionary = makeObject(dictionaryKind);
  for (CFIndex i = 0; i < count; ++i) {
    dictionary->items.push_back(CFRetain(keys[i]));
    dictionary->items.push_back(CFRetain(values[i]));
  }
  return reinterpret_cast<CFDictionaryRef>(dictionary);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(objectAt(dictionary).items.size() / 2);
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  const auto& items = objectAt(dictionary).items;
  for (std::size_t i = 0; i < items.size() / 2; ++i) {
    keys[i] = items[2 * i];
    values[i] = items[2 * i + 1];
  }
}

CFURLRef CFURLCopyAbsoluteURL(CFURLRef url) {
  return static_cast<CFURLRef>(CFRetain(url));
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  if (style != kCFURLPOSIXPathStyle) fail("a path of another style");
  return reinterpret_cast<CFStringRef>(makeObject(stringKind, objectAt(url).value));
}
}
