#include "Tools/BrivaneDefaults/HiddenSettings.h"

#include <array>

#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/KeyRelay/RelayKey.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

using Kind = HiddenSetting::Kind;

constexpr std::string_view nextStart =
    "A running Brivane follows this only once it is started again.";

constexpr std::array settings = std::to_array<HiddenSetting>({
    {InputDiagnosticsSettings::verboseKeyLogKey, Kind::yesOrNo, "log each key press"},
    {InputDiagnosticsSettings::keepFunctionKeyFallbackKey, Kind::yesOrNo,
     "fn-F1 and fn-F2 stay hotkeys", nextStart},
    {BrightnessSettings::subZeroDimmingKey, Kind::yesOrNo, "dim below the hardware's lowest level"},
    {BrightnessSettings::brightenPastMaximumKey, Kind::yesOrNo,
     "brighten above the hardware's highest level"},
    {HotkeyBindingStore::customHotkeysEnabledKey, Kind::yesOrNo, "hotkeys of one's own", nextStart},
    {RelaySettings::systemBrightnessKeysEnabledKey, Kind::yesOrNo,
     "relay the keyboard's brightness keys",
     "A running Brivane re-applies the key mapping or not, as this says; the rest counts from its "
     "next start."},
    {RelaySettings::brightnessKeyRelayUpKey, Kind::relayKey, "what brightness up becomes",
     nextStart},
    {RelaySettings::brightnessKeyRelayDownKey, Kind::relayKey, "what brightness down becomes",
     nextStart},
});

std::optional<PropertyValue> relayKeyValue(std::string_view text) {
  const auto code = parseInteger(text);
  for (const RelayKey& key : relayKeys) {
    if (code == key.virtualKeyCode) return PropertyValue{*code};
  }
  return std::nullopt;
}

}  // namespace

std::span<const HiddenSetting> hiddenSettings() {
  return settings;
}

std::optional<PropertyValue> settingValue(const HiddenSetting& setting, std::string_view text) {
  if (setting.kind == Kind::relayKey) return relayKeyValue(text);
  if (text != "true" && text != "false") return std::nullopt;
  return PropertyValue{text == "true"};
}

std::string takenBy(const HiddenSetting& setting) {
  if (setting.kind == Kind::yesOrNo) return "true or false";
  std::string codes;
  for (const RelayKey& key : relayKeys) {
    codes += (codes.empty() ? "" : ", ") + std::to_string(key.virtualKeyCode) + " (" +
             std::string(key.name) + ")";
  }
  return "one of " + codes;
}

}  // namespace brivane
