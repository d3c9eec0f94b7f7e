#pragma once

#include <memory>
#include <set>
#include <utility>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Any number of one-shot timers that end with their owner, so that their tasks may use it. Main
/// thread.
class DelayedTasks {
 public:
  explicit DelayedTasks(Runtime& machineRuntime) : runtime(machineRuntime) {}
  DelayedTasks(const DelayedTasks&) = delete;
  DelayedTasks& operator=(const DelayedTasks&) = delete;
  ~DelayedTasks() {
    for (const TimerID timer : timers) runtime.cancel(timer);
  }

  /// `task` once, `delay` from now. It may destroy the owner.
  void after(Microseconds delay, Task task) {
    const auto timer = std::make_shared<TimerID>(0);
    *timer = runtime.after(delay, [this, timer, work = std::move(task)] {
      timers.erase(*timer);
      work();
    });
    timers.insert(*timer);
  }

 private:
  Runtime& runtime;
  std::set<TimerID> timers;
};

}  // namespace brivane
