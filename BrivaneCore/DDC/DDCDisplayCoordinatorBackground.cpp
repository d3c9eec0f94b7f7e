// What the coordinator reads in the background, and what comes of it: retries of monitors that
// don't answer, saved levels written back. Until a result arrives, displays may come and go and the
// user may write; so an outdated epoch or a recent write makes the result void.

#include <algorithm>
#include <utility>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "BrivaneCore/Support/Lookup.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {

void DDCDisplayCoordinator::warmCache(DisplayID display) {
  if (!tracker.canAttempt(display)) return;
  tracker.warmsInFlight.insert(display);
  tracker.attemptStartedAt[display] = runtime.now();
  ddcQueue.read(display, [this, startedIn = epoch](const MonitorReading& reading) {
    tracker.warmsInFlight.erase(reading.display);
    if (epoch == startedIn) takeIn(reading);
  });
}

void DDCDisplayCoordinator::prewarm(Completion completion) {
  ddcQueue.readAll([this, watch = anchor.watch(), startedIn = epoch,
                    completion = std::move(completion)](const auto& readings) {
    if (watch.isAlive() && epoch == startedIn) {
      for (const MonitorReading& reading : readings) takeIn(reading);
    }
    if (completion) completion();
  });
}

void DDCDisplayCoordinator::restoreSavedBrightness(Completion completion) {
  prewarm([this, watch = anchor.watch(), completion = std::move(completion)] {
    if (watch.isAlive()) restoreSavedLevels();
    if (completion) completion();
  });
}

void DDCDisplayCoordinator::restoreLateMonitors() {
  std::erase_if(awaitingRestore, [this](DisplayID display) {
    return hasAnswered(display) && restoreSavedLevel(display);
  });
}

void DDCDisplayCoordinator::replaceAwaitedLevel(Percent percent, DisplayID display) {
  if (awaitingRestore.contains(display)) store.save(percent, display);
}

void DDCDisplayCoordinator::resyncCache() {
  retryUnresolvedDisplays();
  ddcQueue.reread(rereadCandidates(), [this, startedIn = epoch](const auto& percents) {
    if (epoch != startedIn) return;
    for (const auto& [display, percent] : percents) follow(display, percent);
  });
}

bool DDCDisplayCoordinator::hasUnresolvedDisplays() const {
  return std::ranges::any_of(registry->onlineExternalDisplayIDs(),
                             [this](DisplayID display) { return isUnresolved(display); });
}

void DDCDisplayCoordinator::retryNow() {
  tracker.clearAll();
  ddcQueue.rescan();
  retryUnresolvedDisplays();
}

void DDCDisplayCoordinator::retryPendingNow() {
  tracker.readFailures.clear();
  tracker.nextRetry.clear();
  tracker.warmsInFlight.clear();
  ddcQueue.rescan();
  retryUnresolvedDisplays();
}

void DDCDisplayCoordinator::invalidate() {
  ++epoch;
  for (const DisplayID display : registry->onlineExternalDisplayIDs()) {
    if (store.load(display)) awaitingRestore.insert(display);
  }
  levelCache.percents.clear();
  levelCache.nativeMaxes.clear();
  resolvedHandles.clear();
  lastWrite.clear();
  backends.clear();
  tracker.readFailures.clear();
  tracker.nextRetry.clear();
  tracker.warmsInFlight.clear();
  ddcQueue.rescan();
}

void DDCDisplayCoordinator::takeIn(const MonitorReading& reading) {
  if (reading.handle) resolvedHandles[reading.display] = reading.handle;
  if (reading.luminance) {
    markAnswering(reading.display, *reading.luminance);
  } else {
    noteReadFailure(reading.display);
  }
}

void DDCDisplayCoordinator::markAnswering(DisplayID display, const VCPReading& luminance) {
  keepLevel(display, luminance);
  if (const auto outageSeconds = tracker.recordSuccess(display)) {
    logLine(display, "answering again after " + wholeDecimal(*outageSeconds) + "s");
  }
  keepCapability(display, luminance);
}

void DDCDisplayCoordinator::noteReadFailure(DisplayID display) {
  const auto failure = tracker.recordFailure(display);
  if (failure.isNewFailure) logLine(display, "stopped answering DDC");
  retries.after(fromSeconds(failure.backoff), [this, display] { retryAfterFailure(display); });
}

void DDCDisplayCoordinator::retryAfterFailure(DisplayID display) {
  if (levelCache.nativeMaxes.contains(display)) return;
  if (registry->isOnline(display)) warmCache(display);
}

void DDCDisplayCoordinator::restoreSavedLevels() {
  for (const DisplayID display : registry->onlineExternalDisplayIDs()) {
    if (restoreSavedLevel(display)) awaitingRestore.erase(display);
  }
}

/// Whether nothing is left to restore on the display.
bool DDCDisplayCoordinator::restoreSavedLevel(DisplayID display) {
  if (backend(display) == BrightnessBackendKind::appleDisplay) return true;
  const auto saved = store.load(display);
  return !saved || write(*saved, display, false);
}

std::vector<RereadCandidate> DDCDisplayCoordinator::rereadCandidates() const {
  std::vector<RereadCandidate> candidates;
  for (const auto& [display, handle] : resolvedHandles) {
    if (!hasAnswered(display)) continue;
    candidates.push_back({display, handle, lookUp(tracker.readFailures, display).value_or(0),
                          lookUp(lastWrite, display)});
  }
  return candidates;
}

/// Takes over a level that was set with the monitor's own buttons.
void DDCDisplayCoordinator::follow(DisplayID display, Percent percent) {
  if (DDCQueue::isFreshlyWritten(lookUp(lastWrite, display), runtime.now())) return;
  if (lookUp(levelCache.percents, display) == percent) return;
  levelCache.percents[display] = percent;
  if (!awaitingRestore.contains(display)) store.save(percent, display);
}

bool DDCDisplayCoordinator::isUnresolved(DisplayID display) const {
  return !levelCache.nativeMaxes.contains(display) && !appleDisplays->canControl(display);
}

void DDCDisplayCoordinator::retryUnresolvedDisplays() {
  for (const DisplayID display : registry->onlineExternalDisplayIDs()) {
    if (isUnresolved(display)) warmCache(display);
  }
}

void DDCDisplayCoordinator::logLine(DisplayID display, const std::string& what) {
  log.write("Brivane: [" + std::to_string(display) + "] " + registry->localizedName(display) + " " +
            what);
}

}  // namespace brivane
