// A table with samples above 1.0, written smaller than the display's own, drives SDR white into the
// headroom. A baseline with such samples was captured while an earlier run's ramp was in force, and
// computing from it would brighten what is brightened already: it is poisoned. The cure is an
// identity table and a new capture at the next try, and it is tried once, because a display that
// still reads above white after it would only flicker.

#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"

#include <algorithm>
#include <utility>

namespace brivane {

ExtendedGammaBrightener::ExtendedGammaBrightener(std::shared_ptr<GammaBaselineStore> baselines,
                                                 std::shared_ptr<GammaTableIO> io,
                                                 HeadroomMeasure headroomMeasure,
                                                 ExtendedGammaSettings settings)
    : state{std::move(baselines), std::move(io)},
      measureHeadroom(std::move(headroomMeasure)),
      math{settings} {}

bool ExtendedGammaBrightener::isSupported(DisplayID display) {
  const auto headroom = measureHeadroom(display);
  return headroom && *headroom > 1.0 && math.entryCount(state.io->capacity(display));
}

std::int64_t ExtendedGammaBrightener::amount(DisplayID display) const {
  return state.amount(display);
}

bool ExtendedGammaBrightener::apply(std::int64_t amount, DisplayID display) {
  if (amount < 1) {
    restore(display);
    return true;
  }
  const auto headroom = measureHeadroom(display);
  if (!headroom || !(*headroom > 1.0)) return false;
  const double ceiling = math.ceiling(*headroom);
  if (!(ceiling > 1.0)) return false;
  const auto entries = math.entryCount(state.io->capacity(display));
  if (!entries) return false;
  const auto baseline = state.baselines->baseline(display);
  if (!baseline) return false;
  if (baseline->containsValuesAboveWhite()) {
    recoverFromPoisonedBaseline(display);
    return false;
  }
  const auto resampled = baseline->resampled(*entries);
  if (!resampled) return false;
  const auto boost = std::min<std::int64_t>(amount, 100);
  if (!state.write(resampled->scaled(math.gain(boost, ceiling)), boost, display)) return false;
  attemptedBaselineRecovery.erase(display);
  return true;
}

void ExtendedGammaBrightener::recoverFromPoisonedBaseline(DisplayID display) {
  if (!attemptedBaselineRecovery.insert(display).second) return;
  const auto capacity = state.io->capacity(display);
  if (capacity < 2) return;
  state.io->write(GammaRamp::identity(capacity), display);
  state.baselines->forget(display);
}

void ExtendedGammaBrightener::restore(DisplayID display) {
  state.restore(display);
}

void ExtendedGammaBrightener::relinquish(DisplayID display) {
  state.applied.erase(display);
}

void ExtendedGammaBrightener::restoreAll() {
  state.restoreEach();
  attemptedBaselineRecovery.clear();
  state.io->restoreColorSyncDefaults();
}

bool ExtendedGammaBrightener::reapply() {
  return state.reapply(
      [this](std::int64_t amount, DisplayID display) { return apply(amount, display); });
}

}  // namespace brivane
