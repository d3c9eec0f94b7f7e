// The half of the coordinator that waits for nobody: reads on the DDC queue, retries of monitors
// that don't answer, the return of saved levels. Between the queueing of a read and its result the
// user may plug, unplug and write; so each result is held against the epoch, and a re-read also
// against the last write, before it changes anything.

#include <algorithm>
#include <utility>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "BrivaneCore/Support/Lookup.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {

template <typename Work, typename Finish>
void DDCDisplayCoordinator::inBackground(Work work, Finish finish) {
  ddcQueue->async([work, finish, watch = anchor.watch(), &mainQueue = runtime] {
    if (!watch.isAlive()) return;
    mainQueue.async([finish, watch, result = work()] {
      if (watch.isAlive()) finish(result);
    });
  });
}

void DDCDisplayCoordinator::rescanInBackground() {
  ddcQueue->async([watch = anchor.watch(), scanned = registry] {
    if (watch.isAlive()) scanned->rescanIfNeeded(true);
  });
}

void DDCDisplayCoordinator::warmCache(DisplayID display) {
  if (!tracker.canAttempt(display)) return;
  tracker.warmsInFlight.insert(display);
  tracker.attemptStartedAt[display] = runtime.now();
  inBackground([display, searched = registry] { return MonitorReader::read(*searched, display); },
               [this, startedIn = epoch](const MonitorReading& result) {
                 tracker.warmsInFlight.erase(result.display);
                 if (epoch == startedIn) takeIn(result);
               });
}

void DDCDisplayCoordinator::prewarm(Completion completion) {
  // Unlike other reads, this one has somebody waiting for its end, who must hear of it even when
  // the coordinator is gone.
  ddcQueue->async([this, completion = std::move(completion), startedIn = epoch,
                   watch = anchor.watch(), searched = registry, apple = appleDisplays,
                   &mainQueue = runtime]() mutable {
    auto results =
        watch.isAlive() ? MonitorReader::readAll(*searched, *apple) : std::vector<MonitorReading>{};
    mainQueue.async(
        [this, completion = std::move(completion), startedIn, watch, results = std::move(results)] {
          if (watch.isAlive() && epoch == startedIn) {
            for (const MonitorReading& result : results) takeIn(result);
          }
          if (completion) completion();
        });
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
  inBackground([candidates = rereadCandidates(),
                &clock = runtime] { return MonitorReader::reread(candidates, clock); },
               [this, startedIn = epoch](const std::map<DisplayID, Percent>& percents) {
                 if (epoch != startedIn) return;
                 for (const auto& [display, percent] : percents) follow(display, percent);
               });
}

bool DDCDisplayCoordinator::hasUnresolvedDisplays() const {
  const auto external = registry->onlineExternalDisplayIDs();
  return std::any_of(external.begin(), external.end(),
                     [this](DisplayID display) { return isUnresolved(display); });
}

void DDCDisplayCoordinator::retryNow() {
  tracker.clearAll();
  rescanInBackground();
  retryUnresolvedDisplays();
}

void DDCDisplayCoordinator::retryPendingNow() {
  tracker.readFailures.clear();
  tracker.nextRetry.clear();
  tracker.warmsInFlight.clear();
  rescanInBackground();
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
  rescanInBackground();
}

void DDCDisplayCoordinator::takeIn(const MonitorReading& result) {
  if (result.handle) resolvedHandles[result.display] = result.handle;
  if (result.luminance) {
    markAnswering(result.display, *result.luminance);
  } else {
    noteReadFailure(result.display);
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

/// Whether there is nothing left to restore on the display.
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

/// Takes over a level that the monitor was given by its own buttons.
void DDCDisplayCoordinator::follow(DisplayID display, Percent percent) {
  if (MonitorReader::isFreshlyWritten(lookUp(lastWrite, display), runtime.now())) return;
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
