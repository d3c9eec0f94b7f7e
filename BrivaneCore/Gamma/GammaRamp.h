#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace brivane {

/// One transfer curve per channel. A curve's samples map inputs evenly spaced over 0 to 1 to output
/// levels, 1.0 being SDR white; levels above white are for displays with extended range.
struct GammaRamp {
  std::vector<float> red;
  std::vector<float> green;
  std::vector<float> blue;

  /// Output equal to input on every channel, with `entries` samples but at least 2.
  static GammaRamp identity(std::int64_t entries);

  /// Samples of the red channel.
  std::int64_t count() const { return static_cast<std::int64_t>(red.size()); }

  /// Whether there are samples, and every channel has the same number of them.
  bool isWellFormed() const;

  /// The largest sample of all channels; 0 when none is above 0.
  float peak() const;

  /// Whether some sample is above SDR white, as only an extended-range brightener leaves them.
  bool containsValuesAboveWhite() const { return peak() > 1.0F; }

  /// Every sample multiplied by `factor`, not limited to white.
  GammaRamp scaled(double factor) const;

  /// The same curves with `target` samples per channel, interpolated linearly. Nothing when either
  /// count is below 2 or the ramp is not well-formed.
  std::optional<GammaRamp> resampled(std::int64_t target) const;

  bool operator==(const GammaRamp&) const = default;
};

}  // namespace brivane
