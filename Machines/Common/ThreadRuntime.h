#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// The Runtime of plain threads and the real clock, for command-line modes and for desks in real
/// time. The thread that calls `run()` is the main thread, and until then the one that made it.
/// Each queue has a thread of its own, made when it is first needed. While the machine sleeps a
/// waiting timer's delay stands still, so timers can come late by up to the delay they had left;
/// `now()` counts that time.
class ThreadRuntime : public Runtime {
 public:
  ThreadRuntime();
  ~ThreadRuntime() override;

  Instant now() const override;
  void sleep(Microseconds duration) override;
  bool isMainThread() const override;
  void async(Task task) override;
  TimerID after(Microseconds delay, Task task) override;
  TimerID every(Microseconds period, Task task) override;
  void cancel(TimerID timer) override;
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                               QueueQuality quality) override;
  void run() override;
  void stop() override;

 private:
  class Queue;

  struct Timer {
    Instant start;
    Microseconds period{0};
    Task task;
    Instant deadline;
  };

  TimerID addTimer(Microseconds delay, Microseconds period, Task task);
  Task takeDueTimerTask(Instant moment);
  Task takeNextTask();

  std::atomic<std::thread::id> mainThread = std::this_thread::get_id();
  std::mutex mutex;
  std::condition_variable somethingToDo;
  std::deque<Task> tasks;
  std::map<TimerID, Timer> timers;
  /// The timers in the order of their deadlines.
  std::set<std::pair<Instant, TimerID>> deadlines;
  TimerID nextTimer = 1;
  bool stopped = false;
  std::vector<std::shared_ptr<Queue>> queues;
};

}  // namespace brivane
