#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Frame/HostedMainQueue.h"

namespace brivane {

/// The Runtime over threads and the real clock, on Linux and for desks in real time. The main
/// thread is the one that calls `run()` or hosts the main queue, before that the constructing one.
/// Each queue has a thread, started on first use, which ends after the queue was dropped and has
/// run all tasks. Timers' delays don't advance while the machine
/// sleeps, so timers can be late by the delay that was left; `now()` does advance.
class ThreadRuntime : public Runtime, public HostedMainQueue {
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
  void beginHosting(Task wake) override;
  void endHosting() override;
  HostedTurn runDue() override;

 private:
  class Queue;

  struct Timer {
    Instant start;
    Microseconds period{0};
    Task task;
    Instant deadline;
  };

  void endForgottenQueues();
  TimerID addTimer(Microseconds delay, Microseconds period, Task task);
  Task takeDueTimerTask(Instant moment);
  Task takeNextTask();
  Task takeQueuedTask();
  void wakeHost(Instant deadline);

  std::atomic<std::thread::id> mainThread = std::this_thread::get_id();
  std::mutex mutex;
  std::condition_variable somethingToDo;
  std::deque<Task> tasks;
  std::map<TimerID, Timer> timers;
  /// The timers by deadline.
  std::set<std::pair<Instant, TimerID>> deadlines;
  TimerID nextTimer = 1;
  bool stopped = false;
  /// Empty: no host.
  Task wake;
  bool isHostAwake = false;
  /// The deadline at which the host returns by itself, or for which it was woken.
  std::optional<Instant> hostDeadline;
  std::vector<std::shared_ptr<Queue>> queues;
};

}  // namespace brivane
