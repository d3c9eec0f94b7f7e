#pragma once

#include <optional>
#include <vector>

#include "Tools/BrivaneDesk/Judge/KnownDesk.h"

namespace brivane::judge {

/// When the program must forget what it knows of the displays, and when it restores their levels:
/// at its start, after a wake, 2 s after a change of the arrangement, and when the user asks for
/// it. It takes each event before the checkers.
class RestoreTimes {
 public:
  explicit RestoreTimes(const KnownDesk& knownDesk) : desk(knownDesk) {}

  void see(const TraceEvent& event);

  /// Whether a restore that began earlier may write levels now.
  bool isUnderWay(Microseconds time) const;
  /// When the program last had to forget what it knew of the displays.
  std::optional<Microseconds> forgotAt() const { return lastForgotAt; }

 private:
  void forget(Microseconds time, Microseconds untilRestore);
  void begin(Microseconds start);

  const KnownDesk& desk;
  std::vector<Microseconds> starts;
  std::optional<Microseconds> lastForgotAt;
};

}  // namespace brivane::judge
