#include "Machines/Linux/X11/HardwareRamp.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brivane {
namespace {

constexpr double highestLevel = 65535.0;

std::uint16_t hardwareLevel(double value) {
  if (!(value > 0.0)) return 0;
  return static_cast<std::uint16_t>(std::lround(std::min(value, 1.0) * highestLevel));
}

double sampleAt(std::span<const float> curve, double position) {
  const auto below = static_cast<std::size_t>(position);
  const std::size_t above = std::min(below + 1, curve.size() - 1);
  const double fraction = position - static_cast<double>(below);
  // Otherwise 0 times an infinite neighbour would give NaN.
  if (fraction == 0.0) return curve[below];
  return curve[below] + fraction * (static_cast<double>(curve[above]) - curve[below]);
}

}  // namespace

std::vector<std::uint16_t> hardwareRamp(std::span<const float> curve, std::size_t size) {
  const std::size_t steps = size > 1 ? size - 1 : 1;
  std::vector<std::uint16_t> ramp(size);
  for (std::size_t index = 0; index < size; ++index) {
    // The product first: it is exact, so a curve of the ramp's own size is copied exactly.
    const auto scaled = static_cast<double>(index * (curve.size() - 1));
    ramp[index] = hardwareLevel(sampleAt(curve, scaled / static_cast<double>(steps)));
  }
  return ramp;
}

std::vector<std::uint16_t> linearRamp(std::size_t size) {
  constexpr std::array<float, 2> line = {0.0F, 1.0F};
  return hardwareRamp(line, size);
}

}  // namespace brivane
