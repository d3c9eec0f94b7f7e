// A table with samples above 1.0, written smaller than the display's own, drives SDR white into the
// headroom. A baseline with such samples was captured while an earlier run's ramp was in force, and
// computing from it would brighten what is brightened already: it is poisoned. The cure is an
// identity table and a new capture at the next try, and it is tried once, because a display that
// still reads above white after it would only flicker.

#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"

#include <utility>

namespace brivane {

ExtendedGammaBrightener::ExtendedGammaBrightener(std::shared_ptr<GammaBaselineStore> baselineStore,
                                                 std::shared_ptr<GammaTableIO> tableIO,
                                                 HeadroomMeasure headroomMeasure,
                                                 ExtendedGammaSettings settings)
    : GammaEffect(std::move(baselineStore), std::move(tableIO)),
      measureHeadroom(std::move(headroomMeasure)),
      math{settings} {}

bool ExtendedGammaBrightener::isSupported(DisplayID display) {
  const auto headroom = measureHeadroom(display);
  return headroom && *headroom > 1.0 && math.entryCount(io->capacity(display));
}

bool ExtendedGammaBrightener::apply(std::int64_t amount, DisplayID display) {
  if (!GammaEffect::apply(amount, display)) return false;
  if (amount >= 1) attemptedBaselineRecovery.erase(display);
  return true;
}

void ExtendedGammaBrightener::restoreAll() {
  attemptedBaselineRecovery.clear();
  GammaEffect::restoreAll();
}

std::optional<GammaRamp> ExtendedGammaBrightener::ramp(std::int64_t amount, DisplayID display) {
  const auto headroom = measureHeadroom(display);
  if (!headroom || !(*headroom > 1.0)) return std::nullopt;
  const double ceiling = math.ceiling(*headroom);
  if (!(ceiling > 1.0)) return std::nullopt;
  const auto entries = math.entryCount(io->capacity(display));
  if (!entries) return std::nullopt;
  const auto baseline = baselines->baseline(display);
  if (!baseline) return std::nullopt;
  if (baseline->containsValuesAboveWhite()) {
    recoverFromPoisonedBaseline(display);
    return std::nullopt;
  }
  const auto resampled = baseline->resampled(*entries);
  if (!resampled) return std::nullopt;
  return resampled->scaled(math.gain(amount, ceiling));
}

void ExtendedGammaBrightener::recoverFromPoisonedBaseline(DisplayID display) {
  if (!attemptedBaselineRecovery.insert(display).second) return;
  const auto capacity = io->capacity(display);
  if (capacity < 2) return;
  io->write(GammaRamp::identity(capacity), display);
  baselines->forget(display);
}

}  // namespace brivane
