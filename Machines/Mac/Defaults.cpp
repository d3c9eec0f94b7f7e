// A system server keeps the settings, and each process has a cached copy; without synchronising, a
// process neither sees others' changes nor publishes its own.
#include "Machines/Mac/Defaults.h"

#include "Machines/Mac/CoreFoundation/CFProperty.h"
#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

CFStringRef ownDomain() {
  return CFSTR("com.quorrel.brivane");
}

}  // namespace

std::optional<PropertyValue> MacDefaults::object(std::string_view key) const {
  const auto name = makeCFText(key);
  if (!name) return std::nullopt;
  CFPreferencesAppSynchronize(ownDomain());
  const CFReference value(CFPreferencesCopyAppValue(name.get(), ownDomain()));
  if (!value) return std::nullopt;
  return propertyOf(value.get());
}

void MacDefaults::set(std::string_view key, const PropertyValue& value) {
  const auto object = makeCFProperty(value);
  if (object) store(key, object.get());
}

void MacDefaults::remove(std::string_view key) {
  store(key, nullptr);
}

void MacDefaults::store(std::string_view key, const void* valueOrNull) {
  const auto name = makeCFText(key);
  if (!name) return;
  CFPreferencesSetAppValue(name.get(), valueOrNull, ownDomain());
  if (!CFPreferencesAppSynchronize(ownDomain())) {
    log.write("Brivane: settings could not be saved");
  }
}

std::optional<PropertyValue::Dictionary> MacDefaultsSuite::persistentDomain(
    std::string_view domain) {
  const auto name = makeCFText(domain);
  if (!name) return std::nullopt;
  CFPreferencesAppSynchronize(name.get());
  const CFReference keys(
      CFPreferencesCopyKeyList(name.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
  if (!keys) return std::nullopt;
  const CFReference values(CFPreferencesCopyMultiple(
      keys.get(), name.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
  if (!values) return std::nullopt;
  const PropertyValue content = propertyOf(values.get());
  return *content.dictionary();
}

}  // namespace brivane
