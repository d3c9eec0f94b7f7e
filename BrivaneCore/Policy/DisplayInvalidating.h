#pragma once

#include <functional>

namespace brivane {

/// What a change of the displays or a wake asks of the brightness controller. Main thread.
class DisplayInvalidating {
 public:
  virtual ~DisplayInvalidating() = default;

  /// Forgets what was learnt about the set of displays.
  virtual void invalidate() = 0;

  /// Retries monitors that don't answer at once, without forgetting when their outages began.
  virtual void retryPendingNow() = 0;

  /// Writes saved levels to the monitors that could not be restored after the last `invalidate` and
  /// answer now.
  virtual void restoreLateMonitors() = 0;

  /// Whether some external display is neither answering nor driven by the display services.
  virtual bool hasUnresolvedDisplays() const = 0;

  /// Writes every software effect in force again; true when every display took it.
  virtual bool reapplyGammaRamps() = 0;

  /// Reads the monitors and writes their saved levels back, then calls `completion` if there is
  /// one.
  virtual void restoreSavedBrightness(std::function<void()> completion) = 0;
};

}  // namespace brivane
