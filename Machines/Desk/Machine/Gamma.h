#pragma once

#include "BrivaneCore/Seams/GammaTables.h"
#include "Machines/Desk/Hardware/GammaHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The gamma tables of the desk's displays. A status other than 0 is always 1; a failing restore
/// changes nothing.
class DeskGammaTables : public GammaTables {
 public:
  DeskGammaTables(GammaHardware& gammaHardware, const AttachedDisplays& attachedDisplays,
                  Faults& machineFaults, const Tracer& hardwareTracer)
      : hardware(gammaHardware),
        displays(attachedDisplays),
        faults(machineFaults),
        tracer(hardwareTracer) {}

  std::uint32_t capacity(DisplayID number) override;
  /// `returned` is the smaller of the arrays' and the table's counts.
  std::int32_t readTable(DisplayID number, std::span<float> red, std::span<float> green,
                         std::span<float> blue, std::uint32_t& returned) override;
  std::int32_t writeTable(DisplayID number, std::span<const float> red,
                          std::span<const float> green, std::span<const float> blue) override;
  void restoreCalibratedTables() override;

 private:
  GammaHardware& hardware;
  const AttachedDisplays& displays;
  Faults& faults;
  const Tracer& tracer;
};

}  // namespace brivane
