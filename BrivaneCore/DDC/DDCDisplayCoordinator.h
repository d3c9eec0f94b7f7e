#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DDCQueue.h"
#include "BrivaneCore/DDC/DDCRetryTracker.h"
#include "BrivaneCore/DDC/DDCTransport.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "BrivaneCore/DDC/LevelCache.h"
#include "BrivaneCore/Levels/BrightnessStore.h"
#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/DelayedTasks.h"
#include "BrivaneCore/Seams/Machine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// All brightness traffic to monitors that are not built in: which backend drives a display, the
/// caches, background reads, retries of monitors that don't answer, and the restoring and saving of
/// levels.
///
/// Main thread. Writes block it for the transport's waits; longer work runs on the DDC queue, and a
/// result is dropped when the epoch has changed since its start.
class DDCDisplayCoordinator {
 public:
  using ExplicitWriteCallback = std::function<void(DisplayID)>;
  using Completion = std::function<void()>;

  /// `explicitWriteCallback` is not empty.
  DDCDisplayCoordinator(Machine& machine, std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
                        std::shared_ptr<DisplayRegistry> displayRegistry,
                        BrightnessStore& brightnessStore,
                        ExplicitWriteCallback explicitWriteCallback);

  /// The display's backend; `none` is decided anew each time.
  BrightnessBackendKind backend(DisplayID display);

  /// The current percent, read from the monitor (blocking, on the DDC queue) if none is cached.
  std::optional<Percent> brightness(DisplayID display);

  /// Sets the level, limited to 0 to 100; whether the hardware took it. An explicit write is one
  /// that the user asked for: it is announced through the callback before it is made.
  bool write(Percent percent, DisplayID display, bool isExplicitUserWrite);

  /// The cached or saved percent, without touching the bus.
  std::optional<Percent> lastKnownPercent(DisplayID display);

  /// Whether the display counts as speaking DDC/CI now.
  bool isKnownDDC(DisplayID display);

  /// Starts one background read of the display, unless one is running or it is too early.
  void warmCache(DisplayID display);

  /// Reads all online external displays in the background, then calls `completion` if there is one.
  void prewarm(Completion completion);

  /// `prewarm`, then writes the saved levels back, then calls `completion` if there is one.
  void restoreSavedBrightness(Completion completion);

  /// Writes the saved level of each display that still awaits it and has answered meanwhile.
  void restoreLateMonitors();

  /// Replaces the saved level, if the display still awaits it, by `percent`: the hardware's level
  /// under a software effect that the user has chosen.
  void replaceAwaitedLevel(Percent percent, DisplayID display);

  /// Follows changes made with the monitors' own buttons, in the background.
  void resyncCache();

  /// One target per online display, in the registry's order.
  std::vector<DisplayTarget> refreshTargets();

  /// Whether some online external display neither answers nor is driven by display services.
  bool hasUnresolvedDisplays() const;

  /// Forgets all back-off and outages and retries at once.
  void retryNow();

  /// Forgets the back-off, but not when outages began, and retries at once.
  void retryPendingNow();

  /// Forgets everything learnt about the current set of displays.
  void invalidate();

  /// One raw reading, blocking, on the DDC queue.
  std::optional<VCPReading> probe(DisplayID display);

  const std::shared_ptr<DisplayRegistry> registry;
  BrightnessStore& store;
  const ExplicitWriteCallback onExplicitDDCWrite;
  LevelCache levelCache;
  DDCRetryTracker tracker;

 private:
  bool writeToAppleDisplay(Percent percent, DisplayID display, bool isExplicitUserWrite);
  bool writeToMonitor(Percent percent, DisplayID display, bool isExplicitUserWrite);
  std::optional<Percent> readAppleDisplay(DisplayID display);
  std::optional<PercentRange> settableRange(DisplayID display);

  /// Keeps what a monitor answered, for this run and for later ones.
  void keepLevel(DisplayID display, const VCPReading& luminance);
  void keepCapability(DisplayID display, const VCPReading& luminance);

  void takeIn(const MonitorReading& reading);
  void markAnswering(DisplayID display, const VCPReading& luminance);
  void noteReadFailure(DisplayID display);
  void retryAfterFailure(DisplayID display);
  void restoreSavedLevels();
  bool restoreSavedLevel(DisplayID display);
  std::vector<RereadCandidate> rereadCandidates() const;
  void follow(DisplayID display, Percent percent);

  bool hasAnswered(DisplayID display) const;
  bool isUnresolved(DisplayID display) const;
  void retryUnresolvedDisplays();
  void logLine(DisplayID display, const std::string& what);

  std::map<DisplayID, std::shared_ptr<DDCTransport>> resolvedHandles;
  std::map<DisplayID, Instant> lastWrite;
  /// Displays whose saved levels were not written back since the last invalidation.
  std::set<DisplayID> awaitingRestore;
  std::map<DisplayID, BrightnessBackendKind> backends;
  std::int64_t epoch = 0;
  DDCQueue ddcQueue;

  Runtime& runtime;
  DisplaySystem& displays;
  SystemLog& log;
  const std::shared_ptr<AppleDisplayBackend> appleDisplays;
  DelayedTasks retries;
  LivenessAnchor anchor;
};

}  // namespace brivane
