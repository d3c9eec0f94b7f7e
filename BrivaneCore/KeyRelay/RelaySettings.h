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

  /// F19, unless the settings name another by its virtual key code.
  RelayKey relayUpKey() const;

  /// F20, unless the settings name another by its virtual key code.
  RelayKey relayDownKey() const;

 private:
  std::optional<RelayKey> storedKey(std::string_view key) const;

  const UserDefaults& defaults;
};

}  // namespace brivane
