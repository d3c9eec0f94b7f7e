#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "BrivaneCore/Input/HotkeyBinding.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// The user's two key combinations and the switch over them, read at each use. Changing them
/// here registers nothing. Main thread.
///
/// Stored numbers are integers as the platform converts them: a Boolean is 0 or 1, a fraction
/// counts when its value is whole. Anything else (text, a date, 3.5) counts as absent. An integer
/// outside 0 to 4294967295 is a programming error and aborts.
class HotkeyBindingStore {
 public:
  static constexpr std::string_view customHotkeysEnabledKey = "CustomHotkeysEnabled";

  explicit HotkeyBindingStore(UserDefaults& userDefaults);

  /// Whether the two bindings are to be registered; on unless switched off.
  bool customHotkeysEnabled() const;

  /// Control, option and the up arrow unless changed.
  HotkeyBinding brightnessUpBinding() const;
  /// Control, option and the down arrow unless changed.
  HotkeyBinding brightnessDownBinding() const;

  void setBrightnessUpBinding(const HotkeyBinding& binding);
  void setBrightnessDownBinding(const HotkeyBinding& binding);

  /// Both bindings are the factory's again; the switch stays.
  void resetBindings();

 private:
  HotkeyBinding binding(std::string_view keyPrefix, std::uint32_t defaultKeyCode) const;
  std::uint32_t storedNumber(const std::string& key, std::uint32_t defaultNumber) const;
  void store(const HotkeyBinding& binding, std::string_view keyPrefix);

  UserDefaults& defaults;
};

}  // namespace brivane
