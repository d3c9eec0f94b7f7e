#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// What is remembered per physical panel across runs, in the user defaults: its last hardware
/// percent, whether it ever answered DDC/CI, and its native DDC/CI maximum. Keys are formed from
/// the panel's vendor, model and serial numbers, so a monitor keeps its values on another port, and
/// monitors that report the same three numbers share them. Main thread.
class BrightnessStore {
 public:
  BrightnessStore(UserDefaults& userDefaults, DisplaySystem& displaySystem);

  /// Stores the percent as it is.
  void save(Percent percent, DisplayID display);
  /// The saved percent limited to 0 to 100.
  std::optional<Percent> load(DisplayID display) const;

  /// Stores a maximum of 1 or more; ignores any other.
  void saveNativeMax(std::int64_t maximum, DisplayID display);
  /// 1 or more, or nothing.
  std::optional<std::int64_t> nativeMax(DisplayID display) const;

  void saveSupportsDDC(bool supportsDDC, DisplayID display);
  /// True or nothing: a stored false is deleted on reading, so that only a positive answer lasts.
  std::optional<bool> supportsDDC(DisplayID display);

 private:
  std::string key(std::string_view prefix, DisplayID display) const;

  UserDefaults& defaults;
  std::string_view brightnessPrefix = "brightness.";
  std::string_view capabilityPrefix = "ddc.";
  std::string_view nativeMaxPrefix = "ddcmax.";
  DisplaySystem& displays;
};

}  // namespace brivane
