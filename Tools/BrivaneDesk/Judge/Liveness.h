#pragma once

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"

namespace brivane::judge {

inline constexpr const char* livenessRule = "after thirty quiet seconds every display is resolved";

/// Thirty quiet seconds after the last trouble, the menu shows the level of every display that
/// answers and that can be found, with a slider, and no line of a retry.
class Liveness : public Checker {
 public:
  Liveness(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
           const MenuReading& menuReading);

  void see(const TraceEvent& event) override;

 private:
  bool mustBeResolved(DisplayNumber number, const KnownDisplay& display) const;

  const MenuReading& menu;
};

}  // namespace brivane::judge
