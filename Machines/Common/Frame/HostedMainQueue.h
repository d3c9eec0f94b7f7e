#pragma once

#include <optional>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// The result of a turn of the main queue.
struct HostedTurn {
  /// `Runtime::stop()` was called: no further task may run.
  bool isStopped = false;
  /// When the next turn is due, in the past for at once; nothing: when the host is woken.
  std::optional<Instant> nextDeadline;
};

/// A Runtime's main queue hosted by another loop, a toolkit's, instead of `Runtime::run()`; so that
/// tasks run while a menu is open or a slider is held.
class HostedMainQueue {
 public:
  virtual ~HostedMainQueue() = default;

  /// Makes the calling thread the main thread. `wake` is called on any thread, once until the next
  /// turn, when a turn is due sooner than the last one returned (or for the first turn). It may not
  /// call the Runtime.
  virtual void beginHosting(Task wake) = 0;

  /// Main thread. After it returns, no call of `wake` is running or will be made.
  virtual void endHosting() = 0;

  /// Main thread. Runs the timers that are due and the tasks queued so far; returns early after a
  /// task that calls `stop()`.
  virtual HostedTurn runDue() = 0;
};

}  // namespace brivane
