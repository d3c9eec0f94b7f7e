#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "BrivaneCore/DDC/RetryStatus.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// The bookkeeping of reads that fail: which are in flight, how many failed in a row, when the next
/// may start, since when the display has been out. Main thread.
class DDCRetryTracker {
 public:
  struct Failure {
    /// Seconds to wait before the next read.
    double backoff = 0;
    /// This failure began an outage.
    bool isNewFailure = false;

    bool operator==(const Failure&) const = default;
  };

  explicit DDCRetryTracker(std::function<Instant()> clock);

  /// Whether a read of the display may start now.
  bool canAttempt(DisplayID display) const;

  /// The length in seconds of the outage that this success ended; nothing if there was none.
  std::optional<double> recordSuccess(DisplayID display);

  Failure recordFailure(DisplayID display);

  /// Whether the display counts as speaking DDC/CI: it answered in this run, or it is remembered to
  /// have answered and has not been out for 180 s.
  bool isKnownDDC(DisplayID display, bool resolvedThisRun,
                  std::optional<bool> persistedSupportsDDC) const;

  /// Always retrying; only its caller knows displays that are not.
  RetryStatus status(DisplayID display) const;

  /// Forgets everything but the reads in flight.
  void clearAll();

  /// Displays whose read is queued or running.
  std::set<DisplayID> warmsInFlight;
  /// Consecutive failed reads; 0 after a success.
  std::map<DisplayID, std::int64_t> readFailures;
  /// The earliest instant at which the next read may start.
  std::map<DisplayID, Instant> nextRetry;
  /// The first failure after a success.
  std::map<DisplayID, Instant> failingSince;
  std::map<DisplayID, Instant> attemptStartedAt;
  std::function<Instant()> now;
  /// Seconds; changing it changes nothing: 180 s is in force.
  double giveUpAfter = 180;
  /// Seconds to wait after the first, second, … and every later failure in a row; never empty.
  std::vector<double> backoffSchedule = {1, 2, 3, 4, 5};
  /// Seconds; changing it changes nothing: 0.8 s is in force.
  double minimumAttemptVisibility = 0.8;
};

}  // namespace brivane
