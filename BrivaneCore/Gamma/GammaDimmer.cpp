// Dimming scales the baseline, so the calibration or evening tint that is in it keeps its shape;
// only its amplitude shrinks.

#include "BrivaneCore/Gamma/GammaDimmer.h"

namespace brivane {
namespace {

// What the deepest dimming takes away. The difference is one unit in the last place above 0.82.
constexpr double deepestLoss = 1 - 0.18;

double factor(std::int64_t depth) {
  return 1 + static_cast<double>(depth) / -100 * deepestLoss;
}

}  // namespace

std::optional<GammaRamp> GammaDimmer::ramp(std::int64_t amount, DisplayID display) {
  const auto baseline = baselines->baseline(display);
  if (!baseline) return std::nullopt;
  return baseline->scaled(factor(amount));
}

}  // namespace brivane
