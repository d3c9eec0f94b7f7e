#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// What a gamma table does to the calibrated one, told from the two tables alone.
struct GammaReading {
  enum class Kind {
    calibrated,
    /// Every sample scaled by one factor below 1, as some dimming depth gives it.
    dimmed,
    /// Bent upwards by the power of some boost; or scaled by one factor above 1 and at most 4, and
    /// written with fewer samples, as a boost into the headroom is.
    boosted,
    other,
  };

  Kind kind = Kind::calibrated;
  /// The depth of the dimming, or the boost of the bending, 1 to 100; 0 for others.
  std::int64_t amount = 0;
  /// The largest sample.
  double peak = 0;

  /// "dimmed by 40, peak 0.672" and the like.
  std::string text() const;
};

/// Of the display as it is now; nothing without a gamma table.
std::optional<GammaReading> readGamma(DeskHardware& hardware, DisplayID display);

/// The same for two tables of the same count.
GammaReading readGamma(const GammaTable& table, const GammaTable& calibrated);

}  // namespace brivane
