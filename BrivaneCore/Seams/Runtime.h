#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// A piece of work for a queue. It must not throw.
using Task = std::function<void()>;

/// Names a timer of one Runtime; never 0 and never used twice.
using TimerID = std::uint64_t;

/// How urgent a queue's work is, for machines whose scheduler wants to know.
enum class QueueQuality { userInitiated, utility };

/// Runs its tasks one at a time, in the order they were given, beside the main queue.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;

  /// Any thread; never blocks. The task runs later, even when the last reference to the queue is
  /// dropped meanwhile; only the end of the Runtime drops tasks that have not started.
  virtual void async(Task task) = 0;

  /// Any thread but this queue's own; blocks until everything given before and then `task` has run.
  /// The task may run on the calling thread.
  virtual void sync(const Task& task) = 0;
};

/// Time, queues and timers: the only way to any of them.
///
/// There is one main queue; its tasks run one at a time on the thread that calls `run()`, the main
/// thread. Ending a Runtime waits for tasks that are running and drops all others.
class Runtime {
 public:
  virtual ~Runtime() = default;

  /// Any thread.
  virtual Instant now() const = 0;

  /// Any thread; blocks it for at least `duration`. Nothing else runs on its queue meanwhile.
  virtual void sleep(Microseconds duration) = 0;

  /// Any thread: whether the caller is the main thread.
  virtual bool isMainThread() const = 0;

  /// Any thread; never blocks. Main-queue tasks run in the order they were given.
  virtual void async(Task task) = 0;

  /// Any thread: `task` on the main queue once, `delay` from now. The handle may be ignored.
  virtual TimerID after(Microseconds delay, Task task) = 0;

  /// Any thread: `task` on the main queue at each multiple of `period` (above 0) from now, until
  /// cancelled. Periods that a busy main thread missed are left out, never caught up.
  virtual TimerID every(Microseconds period, Task task) = 0;

  /// Main thread: the timer's task will not run again. Safe for timers that are over, for 0, and
  /// from within the timer's own task.
  virtual void cancel(TimerID timer) = 0;

  /// Main thread. `label` is for debuggers.
  virtual std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                                       QueueQuality quality) = 0;

  /// Main thread: runs main-queue tasks as they come, until `stop()`.
  virtual void run() = 0;

  /// Any thread: the `run()` that is going on returns after the task that is running now.
  virtual void stop() = 0;
};

}  // namespace brivane
