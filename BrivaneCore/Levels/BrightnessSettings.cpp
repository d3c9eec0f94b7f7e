#include "BrivaneCore/Levels/BrightnessSettings.h"

namespace brivane {

BrightnessSettings::BrightnessSettings(const UserDefaults& userDefaults) : defaults(userDefaults) {}

bool BrightnessSettings::subZeroDimmingEnabled() const {
  const auto dimming = defaults.object("SubZeroDimming");
  return !dimming || dimming->asBoolean();
}

bool BrightnessSettings::softwareBrighteningEnabled() const {
  auto brightening = defaults.object("BrightenPastMaximum");
  // The name that the switch had before; whatever the newer one holds wins over it.
  if (!brightening) brightening = defaults.object("SoftwareBrightening");
  return !brightening || brightening->asBoolean();
}

PercentRange BrightnessSettings::levelRange() const {
  return {subZeroDimmingEnabled() ? -100 : 0, softwareBrighteningEnabled() ? 200 : 100};
}

}  // namespace brivane
