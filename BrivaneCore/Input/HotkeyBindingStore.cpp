#include "BrivaneCore/Input/HotkeyBindingStore.h"

#include <limits>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

constexpr std::string_view upPrefix = "BrightnessUp";
constexpr std::string_view downPrefix = "BrightnessDown";
constexpr std::uint32_t upArrow = 126;
constexpr std::uint32_t downArrow = 125;
constexpr std::uint32_t defaultModifiers = HotkeyBinding::control + HotkeyBinding::option;

std::string keyCodeKey(std::string_view prefix) {
  return std::string(prefix) + "KeyCode";
}

std::string modifiersKey(std::string_view prefix) {
  return std::string(prefix) + "Modifiers";
}

}  // namespace

HotkeyBindingStore::HotkeyBindingStore(UserDefaults& userDefaults) : defaults(userDefaults) {}

bool HotkeyBindingStore::customHotkeysEnabled() const {
  const auto enabled = defaults.object(customHotkeysEnabledKey);
  return !enabled || enabled->asBoolean();
}

HotkeyBinding HotkeyBindingStore::brightnessUpBinding() const {
  return binding(upPrefix, upArrow);
}

HotkeyBinding HotkeyBindingStore::brightnessDownBinding() const {
  return binding(downPrefix, downArrow);
}

void HotkeyBindingStore::setBrightnessUpBinding(const HotkeyBinding& binding) {
  store(binding, upPrefix);
}

void HotkeyBindingStore::setBrightnessDownBinding(const HotkeyBinding& binding) {
  store(binding, downPrefix);
}

void HotkeyBindingStore::resetBindings() {
  for (const auto prefix : {upPrefix, downPrefix}) {
    defaults.remove(keyCodeKey(prefix));
    defaults.remove(modifiersKey(prefix));
  }
}

HotkeyBinding HotkeyBindingStore::binding(std::string_view keyPrefix,
                                          std::uint32_t defaultKeyCode) const {
  return {storedNumber(keyCodeKey(keyPrefix), defaultKeyCode),
          storedNumber(modifiersKey(keyPrefix), defaultModifiers)};
}

std::uint32_t HotkeyBindingStore::storedNumber(const std::string& key,
                                               std::uint32_t defaultNumber) const {
  const auto stored = defaults.object(key);
  const auto number = stored ? stored->exactInteger() : std::nullopt;
  if (!number) return defaultNumber;
  if (*number < 0 || *number > std::numeric_limits<std::uint32_t>::max()) {
    fatal("the setting " + key + " holds " + std::to_string(*number) +
          ", which is not a number from 0 to 4294967295");
  }
  return static_cast<std::uint32_t>(*number);
}

void HotkeyBindingStore::store(const HotkeyBinding& binding, std::string_view keyPrefix) {
  defaults.set(keyCodeKey(keyPrefix), {std::int64_t{binding.keyCode}});
  defaults.set(modifiersKey(keyPrefix), {std::int64_t{binding.modifiers}});
}

}  // namespace brivane
