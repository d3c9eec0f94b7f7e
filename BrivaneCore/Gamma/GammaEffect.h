#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "BrivaneCore/Gamma/GammaBaselineStore.h"
#include "BrivaneCore/Gamma/GammaTableIO.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {

/// What dimmer and brighteners have in common: an amount for each display, and restoring. A
/// display has an amount exactly while the last ramp that it took was this effect's. `Interface` is
/// what the effect is for: DisplayDimming or DisplayBrightening. Main thread.
template <typename Interface>
class GammaEffect : public Interface {
 public:
  GammaEffect(std::shared_ptr<GammaBaselineStore> baselineStore,
              std::shared_ptr<GammaTableIO> tableIO)
      : baselines(std::move(baselineStore)), io(std::move(tableIO)) {}

  bool isSupported(DisplayID display) override { return io->capacity(display) > 0; }

  std::int64_t amount(DisplayID display) const override {
    return lookUp(applied, display).value_or(0);
  }

  bool apply(std::int64_t amount, DisplayID display) override {
    if (amount < 1) {
      restore(display);
      return true;
    }
    const auto limited = std::min<std::int64_t>(amount, 100);
    const auto written = ramp(limited, display);
    if (!written || !io->write(*written, display)) return false;
    applied[display] = limited;
    return true;
  }

  void restore(DisplayID display) override {
    if (applied.erase(display) == 0) return;
    if (const auto baseline = baselines->cached(display)) {
      io->write(*baseline, display);
    } else {
      // The baseline was dropped meanwhile. Resetting ends other displays' effects, too, until
      // these are applied again.
      io->restoreColorSyncDefaults();
    }
  }

  void restoreAll() override {
    const auto snapshot = applied;
    for (const auto& [display, amount] : snapshot) restore(display);
    // Even with nothing applied: an earlier run may have left its ramps in force.
    io->restoreColorSyncDefaults();
  }

  bool reapply() override {
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

 protected:
  /// The ramp for an amount of 1 to 100, computed from the display's baseline; nothing when the
  /// display can't have it.
  virtual std::optional<GammaRamp> ramp(std::int64_t amount, DisplayID display) = 0;

  const std::shared_ptr<GammaBaselineStore> baselines;
  const std::shared_ptr<GammaTableIO> io;
  /// 1 to 100.
  std::map<DisplayID, std::int64_t> applied;
};

}  // namespace brivane
