#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "BrivaneCore/Gamma/GammaTableIO.h"

namespace brivane {

/// Each display's ramp as it was before the program touched it. Dimmer and brighteners share one
/// store and compute every ramp they write from here, so that adjustments never compound. Main
/// thread.
class GammaBaselineStore {
 public:
  explicit GammaBaselineStore(std::shared_ptr<GammaTableIO> tableIO);

  /// The baseline, captured from the display if there is none; nothing when that fails, and the
  /// next call tries again.
  std::optional<GammaRamp> baseline(DisplayID display);

  /// The baseline if there is one. For restoring: a capture would take the modified ramp.
  std::optional<GammaRamp> cached(DisplayID display) const;

  void forget(DisplayID display);

  /// Forgets every display that does not satisfy `keeps`.
  void invalidateUnless(const std::function<bool(DisplayID)>& keeps);

  const std::shared_ptr<GammaTableIO> io;

 private:
  std::map<DisplayID, GammaRamp> baselines;
};

}  // namespace brivane
