#pragma once

#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/GammaCurves.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"

namespace brivane::judge {

/// After quiet seconds the level that the menu shows is the monitor's own, and its gamma table says
/// the same, also in the stored maximum. The menu is read when it was rebuilt and when it closes.
class Agreement : public Checker {
 public:
  Agreement(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
            const MenuReading& menuReading, const GammaCurves& gammaCurves);

  void see(const TraceEvent& event) override;

 private:
  void compare(Microseconds time, DisplayNumber number, const KnownDisplay& display);
  std::optional<std::int64_t> ownLevel(Microseconds time, DisplayNumber number,
                                       const KnownDisplay& display);
  void seeMaximum(Microseconds time, DisplayNumber number, std::int64_t maximum);
  void compareGamma(Microseconds time, DisplayNumber number, std::int64_t level);

  const MenuReading& menu;
  const GammaCurves& gamma;
};

}  // namespace brivane::judge
