#pragma once

#include <cstdint>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"

namespace brivane {

/// How the time for which a key is held becomes steps. Pure functions.
struct RampEngine {
  /// The size of one key step, in percentage points.
  static constexpr Percent step = brightnessStep;

  struct RampProfile {
    /// Every step is a multiple of this many percentage points; not 0.
    std::int64_t grid = 0;
    /// Seconds that a sweep from 0 to 100 takes.
    double fullRangeDuration = 0;

    /// Seconds from tick to tick.
    constexpr double repeatInterval() const {
      return static_cast<double>(grid) * fullRangeDuration / 100;
    }

    bool operator==(const RampProfile&) const = default;
  };

  /// Without Shift.
  static constexpr RampProfile coarse{5, 1.2};
  /// With Shift.
  static constexpr RampProfile fine{1, 6.0};

  struct RampStep {
    /// In percentage points, without direction.
    std::int64_t delta = 0;
    /// What is left for the next tick, in percentage points.
    double carry = 0;

    bool operator==(const RampStep&) const = default;
  };

  /// The largest step of one tick: what 0.4 seconds give, on the grid. A profile that gives no
  /// 64-bit number is a programming error and aborts; so it does below.
  static std::int64_t maximumRampStep(const RampProfile& profile);

  /// The step for `elapsed` seconds since the last one. What goes beyond the largest step is
  /// dropped, so that a stall makes no jump. Nothing happens unless `elapsed` is above 0.
  static RampStep rampDelta(double elapsed, double carry, const RampProfile& profile);
};

}  // namespace brivane
