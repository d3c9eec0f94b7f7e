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

/// The Runtime of plain threads and the real clock, for command-line modes and for desks in real
/// time. The thread that calls `run()`, or that hosts the main queue in a loop of its own, is the
/// main thread, and until then the one that made it.
/// Each queue has a thread of its own, made when it is first needed. While the machine sleeps a
/// waiting timer's delay stands still, so timers can come late by up to the delay they had left;
/// `now()` counts that time.
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
  /// The timers in the order of their deadlines.
  std::set<std::pair<Instant, TimerID>> deadlines;
  TimerID nextTimer = 1;
  bool stopped = false;
  /// Empty: nobody hosts the main queue.
  Task wake;
  bool isHostAwake = false;
  /// When the host comes by itself, or has been woken for.
  std::optional<Instant> hostDeadline;
  std::vector<std::shared_ptr<Queue>> queues;
};

}  // namespace brivane
