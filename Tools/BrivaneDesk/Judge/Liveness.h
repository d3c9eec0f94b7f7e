#pragma once

#include <set>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"

namespace brivane::judge {

inline constexpr const char* livenessRule = "after thirty quiet seconds every display is resolved";

/// Thirty quiet seconds after the last trouble, the menu shows the level of every display that
/// answers and that can be found, with a slider, and no line of a retry. The log says of a monitor
/// that it answers again only when the log has said that it stopped.
class Liveness : public Checker {
 public:
  Liveness(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
           const MenuReading& menuReading);

  void see(const TraceEvent& event) override;

 private:
  void seeOutage(Microseconds time, const OutageLogged& outage);
  bool mustBeResolved(DisplayNumber number, const KnownDisplay& display) const;

  const MenuReading& menu;
  std::set<DisplayNumber> silent;
};

}  // namespace brivane::judge
