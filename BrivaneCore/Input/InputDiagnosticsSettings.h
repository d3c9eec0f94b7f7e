#pragma once

#include <string_view>

#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Two hidden switches for finding out what key presses do, read at each use. Both are off by
/// default. Main thread.
class InputDiagnosticsSettings {
 public:
  static constexpr std::string_view verboseKeyLogKey = "VerboseKeyLog";
  static constexpr std::string_view keepFunctionKeyFallbackKey = "KeepFunctionKeyFallback";

  explicit InputDiagnosticsSettings(const UserDefaults& userDefaults);

  /// Log every key press and what was decided about it.
  bool verboseKeyLog() const;

  /// Keep the plain F1 and F2 hotkeys even while the event tap works.
  bool keepFunctionKeyFallback() const;

 private:
  const UserDefaults& defaults;
};

}  // namespace brivane
