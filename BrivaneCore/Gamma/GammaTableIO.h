#pragma once

#include <cstdint>
#include <optional>

#include "BrivaneCore/Gamma/GammaRamp.h"
#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// How gamma ramps get from and to displays. Main thread.
class GammaTableIO {
 public:
  virtual ~GammaTableIO() = default;

  /// Samples per channel that the display's table holds; below 1 for a display without a table.
  virtual std::int64_t capacity(DisplayID display) = 0;

  /// The table in force, at most `entries` samples per channel; nothing when it can't be read.
  virtual std::optional<GammaRamp> read(DisplayID display, std::int64_t entries) = 0;

  /// Puts the ramp in force; false for a ramp that is not well-formed and when the display refuses.
  virtual bool write(const GammaRamp& ramp, DisplayID display) = 0;

  /// Drops every program's gamma changes on all displays: the calibrated tables are back in force.
  virtual void restoreColorSyncDefaults() = 0;
};

}  // namespace brivane
