// Dimming scales the baseline, so the calibration or evening tint that is in it keeps its shape;
// only its amplitude shrinks.

#include "BrivaneCore/Gamma/GammaDimmer.h"

#include <algorithm>
#include <utility>

namespace brivane {
namespace {

// What the deepest dimming takes away. The difference is one unit in the last place above 0.82.
constexpr double deepestLoss = 1 - 0.18;

double factor(std::int64_t depth) {
  return 1 + static_cast<double>(depth) / -100 * deepestLoss;
}

}  // namespace

GammaDimmer::GammaDimmer(std::shared_ptr<GammaBaselineStore> baselines,
                         std::shared_ptr<GammaTableIO> io)
    : state{std::move(baselines), std::move(io)} {}

bool GammaDimmer::isSupported(DisplayID display) {
  return state.io->capacity(display) > 0;
}

std::int64_t GammaDimmer::amount(DisplayID display) const {
  return state.amount(display);
}

bool GammaDimmer::apply(std::int64_t amount, DisplayID display) {
  if (amount < 1) {
    restore(display);
    return true;
  }
  const auto baseline = state.baselines->baseline(display);
  if (!baseline) return false;
  const auto depth = std::min<std::int64_t>(amount, 100);
  return state.write(baseline->scaled(factor(depth)), depth, display);
}

void GammaDimmer::restore(DisplayID display) {
  state.restore(display);
}

void GammaDimmer::restoreAll() {
  state.restoreEach();
  // Even with nothing applied: an earlier run may have left its ramps in force.
  state.io->restoreColorSyncDefaults();
}

bool GammaDimmer::reapply() {
  return state.reapply(
      [this](std::int64_t amount, DisplayID display) { return apply(amount, display); });
}

}  // namespace brivane
