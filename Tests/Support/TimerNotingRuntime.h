#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// A runtime that notes which periodic timers are set and cancelled: "every 250 ms", "no more every
/// 250 ms".
class TimerNotingRuntime : public Runtime {
 public:
  TimerNotingRuntime(Runtime& realRuntime, CallNotes& callNotes)
      : runtime(realRuntime), notes(callNotes) {}

  Instant now() const override { return runtime.now(); }
  void sleep(Microseconds duration) override { runtime.sleep(duration); }
  bool isMainThread() const override { return runtime.isMainThread(); }
  void async(Task task) override { runtime.async(std::move(task)); }
  TimerID after(Microseconds delay, Task task) override {
    return runtime.after(delay, std::move(task));
  }
  TimerID every(Microseconds period, Task task) override {
    const TimerID timer = runtime.every(period, std::move(task));
    periods[timer] = "every " + std::to_string(period.count() / 1000) + " ms";
    notes.add(periods[timer]);
    return timer;
  }
  void cancel(TimerID timer) override {
    runtime.cancel(timer);
    if (const auto period = periods.find(timer); period != periods.end()) {
      notes.add("no more " + period->second);
      periods.erase(period);
    }
  }
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                               QueueQuality quality) override {
    return runtime.makeSerialQueue(label, quality);
  }
  void run() override { runtime.run(); }
  void stop() override { runtime.stop(); }

  /// Periodic timers that are still set.
  std::size_t periodicTimerCount() const { return periods.size(); }

 private:
  Runtime& runtime;
  CallNotes& notes;
  std::map<TimerID, std::string> periods;
};

}  // namespace brivane
