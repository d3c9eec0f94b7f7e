#pragma once

#include <set>

#include "BrivaneCore/Gamma/AppliedGamma.h"
#include "BrivaneCore/Gamma/DisplayBrightening.h"
#include "BrivaneCore/Gamma/ExtendedGammaMath.h"

namespace brivane {

/// Brightens displays with extended-range headroom by driving white itself beyond SDR white: the
/// baseline multiplied by a gain above 1.
class ExtendedGammaBrightener : public DisplayBrightening {
 public:
  ExtendedGammaBrightener(std::shared_ptr<GammaBaselineStore> baselines,
                          std::shared_ptr<GammaTableIO> io, HeadroomMeasure headroomMeasure,
                          ExtendedGammaSettings settings);

  bool isSupported(DisplayID display) override;
  std::int64_t amount(DisplayID display) const override;
  bool apply(std::int64_t amount, DisplayID display) override;
  void restore(DisplayID display) override;
  void relinquish(DisplayID display) override;
  void restoreAll() override;
  bool reapply() override;

 private:
  void recoverFromPoisonedBaseline(DisplayID display);

  AppliedGamma state;
  const HeadroomMeasure measureHeadroom;
  const ExtendedGammaMath math;
  /// Displays whose poisoned baseline was reset, and that took no boost since.
  std::set<DisplayID> attemptedBaselineRecovery;
};

}  // namespace brivane
