#pragma once

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/SetHalves.h"

namespace brivane::judge {

/// A set goes out twice, with 10 ms before each message, unless the bus refuses the first.
class SetPairs : public Checker {
 public:
  SetPairs(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  void seeSet(Microseconds time, const BusSet& set);

  SetHalves halves;
  /// The last event of the main thread, which alone sets.
  Microseconds mainThreadAt{0};
  /// When the last command began.
  Microseconds begunAt{0};
};

}  // namespace brivane::judge
