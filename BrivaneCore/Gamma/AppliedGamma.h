#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "BrivaneCore/Gamma/GammaBaselineStore.h"
#include "BrivaneCore/Gamma/GammaTableIO.h"

namespace brivane {

/// What a gamma effect has in force on which display, and the ways back that dimmer and brighteners
/// have in common. Each effect has one of its own. Main thread.
struct AppliedGamma {
  std::shared_ptr<GammaBaselineStore> baselines;
  std::shared_ptr<GammaTableIO> io;
  /// 1 to 100 per display whose table holds this effect's ramp.
  std::map<DisplayID, std::int64_t> applied = {};

  /// 0 when nothing is applied.
  std::int64_t amount(DisplayID display) const;

  /// Writes the ramp and, when the display took it, records `amount`; whether it did.
  bool write(const GammaRamp& ramp, std::int64_t amount, DisplayID display);

  /// Puts the display's baseline back in force and forgets its amount; nothing happens without one.
  void restore(DisplayID display);

  /// Restores every display that has an amount.
  void restoreEach();

  /// Applies every amount again through `apply`; one that fails stays recorded. True when none did.
  bool reapply(const std::function<bool(std::int64_t amount, DisplayID display)>& apply);
};

}  // namespace brivane
