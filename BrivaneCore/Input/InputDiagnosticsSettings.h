#pragma once

#include <string_view>

#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Hidden switches for finding out what key presses do, read at each use. All are off by default.
/// Main thread.
class InputDiagnosticsSettings {
 public:
  static constexpr std::string_view verboseKeyLogKey = "VerboseKeyLog";
  static constexpr std::string_view keepFunctionKeyFallbackKey = "KeepFunctionKeyFallback";

  explicit InputDiagnosticsSettings(const UserDefaults& userDefaults);

  /// Log every key press and what was decided about it.
  bool verboseKeyLog() const;

  /// Keep the plain F1 and F2 hotkeys even while the event tap works.
  bool keepFunctionKeyFallback() const;

  /// Leave hotkeys that are pressed while the program's own menu is open to the system, which may
  /// hand them on only when the menu closes.
  bool holdHotkeysWhileMenuIsOpen() const;

 private:
  const UserDefaults& defaults;
};

}  // namespace brivane
