#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// A runtime that notes which periodic timers are set and cancelled, "every 250 ms" and "no more
/// every 250 ms" (and "every 250 ms too" for one that is set beside another), and which queue is
/// given a task, "task for <label>" and "task for main".
class TimerNotingRuntime : public Runtime {
 public:
  TimerNotingRuntime(Runtime& realRuntime, CallNotes& callNotes)
      : runtime(realRuntime), notes(callNotes) {}

  Instant now() const override { return runtime.now(); }
  void sleep(Microseconds duration) override { runtime.sleep(duration); }
  bool isMainThread() const override { return runtime.isMainThread(); }
  void async(Task task) override {
    notes.add("task for main");
    runtime.async(std::move(task));
  }
  TimerID after(Microseconds delay, Task task) override {
    return runtime.after(delay, std::move(task));
  }
  TimerID every(Microseconds period, Task task) override {
    const TimerID timer = runtime.every(period, std::move(task));
    std::string text = "every " + std::to_string(period.count() / 1000) + " ms";
    for (const auto& [other, otherText] : periods) {
      if (otherText == text) text += " too";
    }
    notes.add(text);
    periods[timer] = std::move(text);
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
    return std::make_shared<Queue>(runtime.makeSerialQueue(label, quality), notes, label);
  }
  void run() override { runtime.run(); }
  void stop() override { runtime.stop(); }

  /// Periodic timers that are still set.
  std::size_t periodicTimerCount() const { return periods.size(); }

 private:
  class Queue : public SerialQueue {
   public:
    Queue(std::shared_ptr<SerialQueue> realQueue, CallNotes& callNotes, std::string queueLabel)
        : queue(std::move(realQueue)), notes(callNotes), label(std::move(queueLabel)) {}

    void async(Task task) override {
      notes.add("task for " + label);
      queue->async(std::move(task));
    }
    void sync(const Task& task) override { queue->sync(task); }

   private:
    const std::shared_ptr<SerialQueue> queue;
    CallNotes& notes;
    const std::string label;
  };

  Runtime& runtime;
  CallNotes& notes;
  std::map<TimerID, std::string> periods;
};

}  // namespace brivane
