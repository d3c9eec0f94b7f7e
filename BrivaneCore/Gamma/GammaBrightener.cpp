// A power function lifts what lies between black and white. White can't rise on a display without
// headroom, and a baseline sample that claims to lie above it counts as white.

#include "BrivaneCore/Gamma/GammaBrightener.h"

#include <algorithm>
#include <cmath>
#include <utility>

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

GammaBrightener::GammaBrightener(std::shared_ptr<GammaBaselineStore> baselines,
                                 std::shared_ptr<GammaTableIO> io)
    : state{std::move(baselines), std::move(io)} {}

bool GammaBrightener::isSupported(DisplayID display) {
  return state.io->capacity(display) > 0;
}

std::int64_t GammaBrightener::amount(DisplayID display) const {
  return state.amount(display);
}

bool GammaBrightener::apply(std::int64_t amount, DisplayID display) {
  if (amount < 1) {
    restore(display);
    return true;
  }
  const auto baseline = state.baselines->baseline(display);
  if (!baseline) return false;
  const auto boost = std::min<std::int64_t>(amount, 100);
  const double power = exponent(boost);
  const GammaRamp ramp{bent(baseline->red, power), bent(baseline->green, power),
                       bent(baseline->blue, power)};
  return state.write(ramp, boost, display);
}

void GammaBrightener::restore(DisplayID display) {
  state.restore(display);
}

void GammaBrightener::relinquish(DisplayID display) {
  state.applied.erase(display);
}

void GammaBrightener::restoreAll() {
  state.restoreEach();
  state.io->restoreColorSyncDefaults();
}

bool GammaBrightener::reapply() {
  return state.reapply(
      [this](std::int64_t amount, DisplayID display) { return apply(amount, display); });
}

}  // namespace brivane
