#pragma once

#include "BrivaneCore/Gamma/DisplayBrightening.h"
#include "BrivaneCore/Gamma/GammaEffect.h"

namespace brivane {

/// Brightens any display that has a gamma table by bending its baseline upwards: mid-tones rise,
/// black and white stay.
class GammaBrightener : public GammaEffect<DisplayBrightening> {
 public:
  using GammaEffect::GammaEffect;

  void relinquish(DisplayID display) override { applied.erase(display); }

 protected:
  std::optional<GammaRamp> ramp(std::int64_t amount, DisplayID display) override;
};

}  // namespace brivane
