// A power function lifts what lies between black and white. White can't rise on a display without
// headroom, and a baseline sample that claims to lie above it counts as white.

#include "BrivaneCore/Gamma/GammaBrightener.h"

#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

using Channel = std::vector<float>;

double exponent(std::int64_t boost) {
  return 1 / (static_cast<double>(boost) / 100 * 0.8 + 1);
}

// A sample that is not a number fails every comparison and counts as white.
float fromBlackToWhite(float sample) {
  if (sample < 0) return 0;
  return sample < 1 ? sample : 1;
}

Channel bent(const Channel& channel, double power) {
  Channel result(channel.size());
  std::ranges::transform(channel, result.begin(), [power](float sample) {
    return static_cast<float>(std::pow(static_cast<double>(fromBlackToWhite(sample)), power));
  });
  return result;
}

}  // namespace

std::optional<GammaRamp> GammaBrightener::ramp(std::int64_t amount, DisplayID display) {
  const auto baseline = baselines->baseline(display);
  if (!baseline) return std::nullopt;
  const double power = exponent(amount);
  return GammaRamp{bent(baseline->red, power), bent(baseline->green, power),
                   bent(baseline->blue, power)};
}

}  // namespace brivane
