#pragma once

#include <map>
#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A reply is fetched 40 ms after its request, and a read that fails is tried three times.
class ReadTimes : public Checker {
 public:
  ReadTimes(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  struct Read {
    int attempts = 0;
    /// Attempts before the first may have been missed; until a pause there is no telling.
    bool isUnclear = false;
    Microseconds requestedAt{0};
    /// When the last attempt failed, if another has to follow.
    std::optional<Microseconds> failedAt;
  };

  void look(Microseconds time);
  void seeRequest(Microseconds time, const BusGet& get);
  void seeReply(Microseconds time, const BusRead& reply);
  void fail(Microseconds time, DisplayNumber display);

  std::map<DisplayNumber, Read> reads;
  /// Until then a read's first attempt may have been missed.
  Microseconds unclearUntil{0};
};

}  // namespace brivane::judge
