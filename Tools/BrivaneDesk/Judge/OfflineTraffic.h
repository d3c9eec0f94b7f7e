#pragma once

#include <map>
#include <set>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// Once the program knows that a display is gone, the display's bus gets no more than the reads
/// that were queued by then. (Before, a person's own set may still go out.)
class OfflineTraffic : public Checker {
 public:
  OfflineTraffic(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  void seeTransfer(Microseconds time, DisplayNumber display, bool isSet);
  void learnOfAll(Microseconds time);

  /// Displays whose absence the program knows of, since when.
  std::map<DisplayNumber, Microseconds> absentSince;
  /// The last transfer of the queue of reads, to any display.
  Microseconds lastReadAt{0};
};

}  // namespace brivane::judge
