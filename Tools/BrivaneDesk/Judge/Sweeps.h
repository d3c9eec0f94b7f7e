#pragma once

#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A level is shown only for a press and in the sweep of a key that is held, which begins 0.35 s
/// after its press, goes one way by at most 30 at once, a whole range in 1.2 s at the fastest, and
/// ends with its key.
class Sweeps : public Checker {
 public:
  Sweeps(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  struct Shown {
    Microseconds time{0};
    std::int64_t level = 0;
  };

  void seeLevel(Microseconds time, std::int64_t level);
  void seeStepOfSweep(Microseconds time, std::int64_t level);

  /// The last level of the current press, on the display where it began.
  std::optional<Shown> last;
  std::optional<Microseconds> pressOfLast;
  /// When something else last changed what a step starts from.
  std::optional<Microseconds> disturbedAt;
  std::optional<Microseconds> requestedAt;
};

}  // namespace brivane::judge
