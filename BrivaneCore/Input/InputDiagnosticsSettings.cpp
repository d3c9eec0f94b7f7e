#include "BrivaneCore/Input/InputDiagnosticsSettings.h"

namespace brivane {
namespace {

bool isOn(const UserDefaults& defaults, std::string_view key) {
  const auto stored = defaults.object(key);
  return stored && stored->asBoolean();
}

}  // namespace

InputDiagnosticsSettings::InputDiagnosticsSettings(const UserDefaults& userDefaults)
    : defaults(userDefaults) {}

bool InputDiagnosticsSettings::verboseKeyLog() const {
  return isOn(defaults, verboseKeyLogKey);
}

bool InputDiagnosticsSettings::keepFunctionKeyFallback() const {
  return isOn(defaults, keepFunctionKeyFallbackKey);
}

bool InputDiagnosticsSettings::holdHotkeysWhileMenuIsOpen() const {
  return isOn(defaults, "HoldHotkeysWhileMenuIsOpen");
}

}  // namespace brivane
