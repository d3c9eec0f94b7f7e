// A display is recorded exactly while the last ramp that it took was this effect's. The way back is
// the baseline; where that was dropped meanwhile, only the calibrated tables of all displays are
// left, which takes other displays' effects away too until these are applied again.

#include "BrivaneCore/Gamma/AppliedGamma.h"

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {

std::int64_t AppliedGamma::amount(DisplayID display) const {
  return lookUp(applied, display).value_or(0);
}

bool AppliedGamma::write(const GammaRamp& ramp, std::int64_t amount, DisplayID display) {
  if (!io->write(ramp, display)) return false;
  applied[display] = amount;
  return true;
}

void AppliedGamma::restore(DisplayID display) {
  if (applied.erase(display) == 0) return;
  if (const auto baseline = baselines->cached(display)) {
    io->write(*baseline, display);
  } else {
    io->restoreColorSyncDefaults();
  }
}

void AppliedGamma::restoreEach() {
  const auto snapshot = applied;
  for (const auto& [display, amount] : snapshot) restore(display);
}

bool AppliedGamma::reapply(const std::function<bool(std::int64_t, DisplayID)>& apply) {
  const auto snapshot = applied;
  bool allTaken = true;
  for (const auto& [display, amount] : snapshot) {
    applied.erase(display);
    if (apply(amount, display)) continue;
    applied[display] = amount;
    allTaken = false;
  }
  return allTaken;
}

}  // namespace brivane
