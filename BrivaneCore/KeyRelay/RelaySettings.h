#pragma once

#include <optional>
#include <string_view>

#include "BrivaneCore/KeyRelay/RelayKey.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// The user's settings of the brightness-key relay, read at each use. Main thread.
class RelaySettings {
 public:
  /// The key of the one setting that the program itself writes.
  static constexpr std::string_view systemBrightnessKeysEnabledKey = "SystemBrightnessKeysEnabled";
  static constexpr std::string_view brightnessKeyRelayUpKey = "BrightnessKeyRelayUp";
  static constexpr std::string_view brightnessKeyRelayDownKey = "BrightnessKeyRelayDown";

  explicit RelaySettings(const UserDefaults& userDefaults);

  /// On by default.
  bool systemBrightnessKeysEnabled() const;

  RelayKey relayUpKey() const { return upKeyOf(defaults.object(brightnessKeyRelayUpKey)); }
  RelayKey relayDownKey() const { return downKeyOf(defaults.object(brightnessKeyRelayDownKey)); }

  /// F19, unless the stored value names another by its virtual key code.
  static RelayKey upKeyOf(const std::optional<PropertyValue>& stored);
  /// F20, unless the stored value names another by its virtual key code.
  static RelayKey downKeyOf(const std::optional<PropertyValue>& stored);

 private:
  const UserDefaults& defaults;
};

}  // namespace brivane
