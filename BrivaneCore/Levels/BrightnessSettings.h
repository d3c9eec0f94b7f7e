#pragma once

#include <string_view>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// The user's switches for the software ends of the joint scale, read at each use. Main thread.
class BrightnessSettings {
 public:
  static constexpr std::string_view subZeroDimmingKey = "SubZeroDimming";
  static constexpr std::string_view brightenPastMaximumKey = "BrightenPastMaximum";

  explicit BrightnessSettings(const UserDefaults& userDefaults);

  /// Whether levels below hardware 0 are offered; on by default.
  bool subZeroDimmingEnabled() const;

  /// Whether levels above hardware 100 are offered; on by default.
  bool softwareBrighteningEnabled() const;

  /// The joint levels on offer: -100 or 0 to 100 or 200.
  PercentRange levelRange() const;

 private:
  const UserDefaults& defaults;
};

}  // namespace brivane
