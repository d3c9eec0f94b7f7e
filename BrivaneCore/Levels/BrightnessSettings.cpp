#include "BrivaneCore/Levels/BrightnessSettings.h"

namespace brivane {

BrightnessSettings::BrightnessSettings(const UserDefaults& userDefaults) : defaults(userDefaults) {}

bool BrightnessSettings::subZeroDimmingEnabled() const {
  const auto dimming = defaults.object(subZeroDimmingKey);
  return !dimming || dimming->asBoolean();
}

bool BrightnessSettings::softwareBrighteningEnabled() const {
  auto brightening = defaults.object(brightenPastMaximumKey);
  // The former name of the switch; any value under the newer name wins.
  if (!brightening) brightening = defaults.object("SoftwareBrightening");
  return !brightening || brightening->asBoolean();
}

PercentRange BrightnessSettings::levelRange() const {
  return {subZeroDimmingEnabled() ? -100 : 0, softwareBrighteningEnabled() ? 200 : 100};
}

}  // namespace brivane
