#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// How a gamma table differs from the calibrated one, derived from the two tables alone.
struct GammaReading {
  enum class Kind {
    calibrated,
    /// Every sample scaled by one factor below 1, a dimming depth's.
    dimmed,
    /// Raised by a boost's exponent; or, for a boost into the headroom, scaled by one factor above
    /// 1 and at most 4, with fewer samples.
    boosted,
    other,
  };

  Kind kind = Kind::calibrated;
  /// The dimming's depth or the exponent's boost, 1 to 100; 0 for others.
  std::int64_t amount = 0;
  /// The largest sample.
  double peak = 0;

  /// Such as "dimmed by 40, peak 0.672".
  std::string text() const;
};

/// The reading of the display's current table; nothing without one.
std::optional<GammaReading> readGamma(DeskHardware& hardware, DisplayID display);

/// The reading of two tables of the same count.
GammaReading readGamma(const GammaTable& table, const GammaTable& calibrated);

}  // namespace brivane
