#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace brivane {

/// `curve` (one sample or more, 1.0 being white) as the `size` 16-bit levels of a CRTC's gamma
/// ramp. A curve of another count is interpolated linearly; samples are clamped to 0 to 1, NaN
/// becomes 0.
std::vector<std::uint16_t> hardwareRamp(std::span<const float> curve, std::size_t size);

/// The ramp that changes nothing, from 0 to 65535.
std::vector<std::uint16_t> linearRamp(std::size_t size);

}  // namespace brivane
