#pragma once

#include <optional>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// What became of a turn of the main queue.
struct HostedTurn {
  /// `Runtime::stop()` was called: nothing more is to run, whatever waits.
  bool isStopped = false;
  /// When the next turn is due, in the past when at once; nothing: not before the host is woken.
  std::optional<Instant> nextDeadline;
};

/// A Runtime's main queue for a thread whose loop is somebody else's: a toolkit's, which has to run
/// on while one of its menus is open or a slider is held. It takes the place of `Runtime::run()`.
class HostedMainQueue {
 public:
  virtual ~HostedMainQueue() = default;

  /// From now on the calling thread is the main thread. `wake` is called on any thread when a turn
  /// is due sooner than the last one said (the first comes so); once until that turn. It may not
  /// call the Runtime.
  virtual void beginHosting(Task wake) = 0;

  /// Main thread: `wake` is not called any more, and no call of it is going on.
  virtual void endHosting() = 0;

  /// Main thread: runs the timers that are due now and the tasks that have been queued so far, and
  /// ends after the task in which `stop()` is called.
  virtual HostedTurn runDue() = 0;
};

}  // namespace brivane
