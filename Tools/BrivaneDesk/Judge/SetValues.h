#pragma once

#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/SetHalves.h"

namespace brivane::judge {

/// A set carries the raw value of a whole percent, within the maximum last read or stored; the
/// percent is the one that is stored at its end.
class SetValues : public Checker {
 public:
  SetValues(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  struct Ended {
    Microseconds time{0};
    BusSet set;
  };

  void seeSet(Microseconds time, const BusSet& set);
  void seeLevel(const TraceEvent& event, std::string_view identity);

  SetHalves halves;
  std::optional<Ended> ended;
};

}  // namespace brivane::judge
