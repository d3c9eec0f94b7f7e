#pragma once

#include "BrivaneCore/Gamma/GammaTableIO.h"
#include "BrivaneCore/Seams/GammaTables.h"

namespace brivane {

/// Ramps over the machine's gamma tables. It keeps nothing. More samples per channel than 32 bits
/// can count are a programming error.
class CoreGraphicsGammaTableIO : public GammaTableIO {
 public:
  explicit CoreGraphicsGammaTableIO(GammaTables& gammaTables);

  std::int64_t capacity(DisplayID display) override;
  std::optional<GammaRamp> read(DisplayID display, std::int64_t entries) override;
  bool write(const GammaRamp& ramp, DisplayID display) override;
  void restoreColorSyncDefaults() override;

 private:
  GammaTables& tables;
};

}  // namespace brivane
