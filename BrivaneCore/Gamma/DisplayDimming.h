#pragma once

#include <cstdint>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// Software that darkens displays below their lowest hardware level. Main thread.
class DisplayDimming {
 public:
  virtual ~DisplayDimming() = default;

  virtual bool isSupported(DisplayID display) = 0;

  /// The depth in force, 1 to 100; 0 when there is none.
  virtual std::int64_t amount(DisplayID display) const = 0;

  /// Dims by `amount`, limited to 0 to 100; below 1 restores. Whether the display accepted it.
  virtual bool apply(std::int64_t amount, DisplayID display) = 0;

  /// Ends this display's dimming.
  virtual void restore(DisplayID display) = 0;

  /// Ends all dimming and restores the calibrated tables of all displays.
  virtual void restoreAll() = 0;

  /// Writes every depth in force again; true when every display accepted it.
  virtual bool reapply() = 0;
};

}  // namespace brivane
