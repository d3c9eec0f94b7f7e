// The settings are read at each use and written at once, so that the resident program and a
// command-line run beside it see the same values. Values of a wrong kind, edited by hand or stored
// by another version, go through the settings' conversions rather than being refused.

#include "BrivaneCore/Levels/BrightnessStore.h"

namespace brivane {

BrightnessStore::BrightnessStore(UserDefaults& userDefaults, DisplaySystem& displaySystem)
    : defaults(userDefaults), displays(displaySystem) {}

void BrightnessStore::save(Percent percent, DisplayID display) {
  defaults.set(key(brightnessPrefix, display), {percent});
}

std::optional<Percent> BrightnessStore::load(DisplayID display) const {
  const auto stored = defaults.object(key(brightnessPrefix, display));
  if (!stored) return std::nullopt;
  return BrightnessScaling::clamp(stored->asInteger());
}

void BrightnessStore::saveNativeMax(std::int64_t maximum, DisplayID display) {
  if (maximum < 1) return;
  defaults.set(key(nativeMaxPrefix, display), {maximum});
}

std::optional<std::int64_t> BrightnessStore::nativeMax(DisplayID display) const {
  const auto stored = defaults.object(key(nativeMaxPrefix, display));
  if (!stored || stored->asInteger() < 1) return std::nullopt;
  return stored->asInteger();
}

void BrightnessStore::saveSupportsDDC(bool supportsDDC, DisplayID display) {
  defaults.set(key(capabilityPrefix, display), {supportsDDC});
}

std::optional<bool> BrightnessStore::supportsDDC(DisplayID display) {
  const std::string storedUnder = key(capabilityPrefix, display);
  const auto stored = defaults.object(storedUnder);
  if (!stored) return std::nullopt;
  if (stored->asBoolean()) return true;
  defaults.remove(storedUnder);
  return std::nullopt;
}

std::string BrightnessStore::key(std::string_view prefix, DisplayID display) const {
  const PanelIdentity panel = displays.panelIdentity(display);
  return std::string(prefix) + std::to_string(panel.vendor) + "." + std::to_string(panel.model) +
         "." + std::to_string(panel.serial);
}

}  // namespace brivane
