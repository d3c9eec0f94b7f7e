// Monitors stop answering for a while when they sleep, show another input or change their mode.
// This is pure bookkeeping over a clock: it starts nothing and waits for nothing.

#include "BrivaneCore/DDC/DDCRetryTracker.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

/// Seconds of outage after which a remembered display is given up on.
constexpr double giveUpLimitSeconds = 180;
/// Seconds for which an attempt is shown as running, however quickly it ended.
constexpr double attemptVisibilitySeconds = 0.8;

}  // namespace

DDCRetryTracker::DDCRetryTracker(std::function<Instant()> clock) : now(std::move(clock)) {}

bool DDCRetryTracker::canAttempt(DisplayID display) const {
  if (warmsInFlight.contains(display)) return false;
  const auto earliest = lookUp(nextRetry, display);
  return !earliest || now() >= *earliest;
}

std::optional<double> DDCRetryTracker::recordSuccess(DisplayID display) {
  readFailures[display] = 0;
  nextRetry.erase(display);
  const auto since = lookUp(failingSince, display);
  if (!since) return std::nullopt;
  failingSince.erase(display);
  return secondsBetween(*since, now());
}

DDCRetryTracker::Failure DDCRetryTracker::recordFailure(DisplayID display) {
  if (backoffSchedule.empty()) fatal("a retry tracker was given an empty back-off schedule");
  const std::int64_t previous = lookUp(readFailures, display).value_or(0);
  if (previous == std::numeric_limits<std::int64_t>::max()) {
    fatal("a count of failed reads left the 64-bit range");
  }
  readFailures[display] = previous + 1;
  const Instant failedAt = now();
  const bool isNewFailure = failingSince.try_emplace(display, failedAt).second;
  const auto last = static_cast<std::int64_t>(backoffSchedule.size()) - 1;
  const double backoff = backoffSchedule[static_cast<std::size_t>(std::min(previous, last))];
  nextRetry[display] = failedAt + fromSeconds(backoff);
  return {backoff, isNewFailure};
}

bool DDCRetryTracker::isKnownDDC(DisplayID display, bool resolvedThisRun,
                                 std::optional<bool> persistedSupportsDDC) const {
  if (resolvedThisRun) return true;
  if (!persistedSupportsDDC.value_or(false)) return false;
  const auto since = lookUp(failingSince, display);
  return !since || secondsBetween(*since, now()) < giveUpLimitSeconds;
}

RetryStatus DDCRetryTracker::status(DisplayID display) const {
  const std::int64_t attempts = lookUp(readFailures, display).value_or(0);
  if (warmsInFlight.contains(display)) return {true, attempts, std::nullopt};
  const auto started = lookUp(attemptStartedAt, display);
  if (started && secondsBetween(*started, now()) < attemptVisibilitySeconds) {
    return {true, attempts, std::nullopt};
  }
  const auto earliest = lookUp(nextRetry, display);
  if (!earliest) return {true, attempts, 0};
  const double seconds = std::ceil(secondsBetween(now(), *earliest));
  return {true, attempts, static_cast<std::int64_t>(std::max(seconds, 0.0))};
}

void DDCRetryTracker::clearAll() {
  readFailures.clear();
  nextRetry.clear();
  failingSince.clear();
  attemptStartedAt.clear();
}

}  // namespace brivane
