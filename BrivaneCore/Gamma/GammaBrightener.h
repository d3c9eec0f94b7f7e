#pragma once

#include "BrivaneCore/Gamma/AppliedGamma.h"
#include "BrivaneCore/Gamma/DisplayBrightening.h"

namespace brivane {

/// Brightens any display that has a gamma table by bending its baseline upwards: mid-tones rise,
/// black and white stay.
class GammaBrightener : public DisplayBrightening {
 public:
  GammaBrightener(std::shared_ptr<GammaBaselineStore> baselines, std::shared_ptr<GammaTableIO> io);

  bool isSupported(DisplayID display) override;
  std::int64_t amount(DisplayID display) const override;
  bool apply(std::int64_t amount, DisplayID display) override;
  void restore(DisplayID display) override;
  void relinquish(DisplayID display) override;
  void restoreAll() override;
  bool reapply() override;

 private:
  AppliedGamma state;
};

}  // namespace brivane
