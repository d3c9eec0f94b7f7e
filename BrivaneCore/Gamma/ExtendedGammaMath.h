#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// The tuning of the extended-range brightener.
struct ExtendedGammaSettings {
  /// The largest factor ever applied to a baseline, whatever the headroom.
  double maximumGain = 4.0;
  /// Samples per channel of the tables written to displays whose own are larger.
  std::int64_t preferredEntryCount = 256;
};

/// The arithmetic of the extended-range brightener.
struct ExtendedGammaMath {
  ExtendedGammaSettings settings;

  /// Samples per channel of the table to write to a display that holds `capacity`: fewer than it
  /// holds. Nothing when the display's table is too small.
  std::optional<std::int64_t> entryCount(std::int64_t capacity) const;

  /// The gain at amount 100: the headroom, at most `maximumGain`, at least 1.0.
  double ceiling(double headroom) const;

  /// The factor of an amount, limited to 0 to 100: 1.0 at 0, rising evenly to the ceiling at 100.
  double gain(std::int64_t amount, double ceiling) const;
};

}  // namespace brivane
