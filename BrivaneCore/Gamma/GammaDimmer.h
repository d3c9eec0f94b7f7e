#pragma once

#include "BrivaneCore/Gamma/AppliedGamma.h"
#include "BrivaneCore/Gamma/DisplayDimming.h"

namespace brivane {

/// Dims any display that has a gamma table by scaling its baseline towards black; the deepest
/// dimming keeps 18 % of it, never black.
class GammaDimmer : public DisplayDimming {
 public:
  GammaDimmer(std::shared_ptr<GammaBaselineStore> baselines, std::shared_ptr<GammaTableIO> io);

  bool isSupported(DisplayID display) override;
  std::int64_t amount(DisplayID display) const override;
  bool apply(std::int64_t amount, DisplayID display) override;
  void restore(DisplayID display) override;
  void restoreAll() override;
  bool reapply() override;

 private:
  AppliedGamma state;
};

}  // namespace brivane
