#pragma once

#include "BrivaneCore/Gamma/DisplayDimming.h"
#include "BrivaneCore/Gamma/GammaEffect.h"

namespace brivane {

/// Dims any display that has a gamma table by scaling its baseline towards black; the deepest
/// dimming keeps 18 % of it, never black.
class GammaDimmer : public GammaEffect<DisplayDimming> {
 public:
  using GammaEffect::GammaEffect;

 protected:
  std::optional<GammaRamp> ramp(std::int64_t amount, DisplayID display) override;
};

}  // namespace brivane
