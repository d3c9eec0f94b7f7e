#pragma once

#include <set>

#include "BrivaneCore/Gamma/DisplayBrightening.h"
#include "BrivaneCore/Gamma/ExtendedGammaMath.h"
#include "BrivaneCore/Gamma/GammaEffect.h"

namespace brivane {

/// Brightens displays with extended-range headroom by driving white itself beyond SDR white: the
/// baseline multiplied by a gain above 1.
class ExtendedGammaBrightener : public GammaEffect<DisplayBrightening> {
 public:
  ExtendedGammaBrightener(std::shared_ptr<GammaBaselineStore> baselineStore,
                          std::shared_ptr<GammaTableIO> tableIO, HeadroomMeasure headroomMeasure,
                          ExtendedGammaSettings settings);

  bool isSupported(DisplayID display) override;
  bool apply(std::int64_t amount, DisplayID display) override;
  void relinquish(DisplayID display) override { applied.erase(display); }
  void restoreAll() override;

 protected:
  std::optional<GammaRamp> ramp(std::int64_t amount, DisplayID display) override;

 private:
  void recoverFromPoisonedBaseline(DisplayID display);

  const HeadroomMeasure measureHeadroom;
  const ExtendedGammaMath math;
  /// Displays whose poisoned baseline was reset, and that took no boost since.
  std::set<DisplayID> attemptedBaselineRecovery;
};

}  // namespace brivane
