#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// A deterministic Runtime in virtual time. Every queue is an actor; one actor runs at a time, and
/// control passes only at `sleep`, at `sync` and at the end of a task. When no actor is runnable,
/// time jumps to the next deadline. Runnable actors take turns in the order in which they became
/// runnable; equal deadlines fire in the order in which they were set or, with a seed, in a random
/// order. One program and one seed give one execution, to the microsecond.
///
/// The constructing thread is the main thread. It may use the runtime outside `run()` and
/// `runFor()`; main-queue tasks wait until it is inside. The clock starts at zero.
class VirtualRuntime : public Runtime {
 public:
  VirtualRuntime();
  explicit VirtualRuntime(std::uint64_t seed);
  /// Waits for running tasks of other queues to finish.
  ~VirtualRuntime() override;

  Instant now() const override;
  void sleep(Microseconds duration) override;
  bool isMainThread() const override;
  void async(Task task) override;
  TimerID after(Microseconds delay, Task task) override;
  TimerID every(Microseconds period, Task task) override;
  void cancel(TimerID timer) override;
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                               QueueQuality quality) override;
  /// Returns on `stop()`; a fatal error when nothing is left that could call it. An exception from
  /// a main-queue task leaves it, too: the end of a simulated process.
  void run() override;
  void stop() override;

  /// Main thread: runs everything due until `duration` from now, where the clock then stands.
  void runFor(Microseconds duration);

  /// Main thread: runs everything due now, on all queues.
  void settle() { runFor(Microseconds(0)); }

  /// Main thread: timers that are still set.
  std::size_t timerCount() const;

 private:
  struct Actor;
  class Queue;

  /// Orders by deadline; at equal deadlines the end of a run comes last, the others in the order
  /// drawn or set.
  struct EventKey {
    Instant deadline;
    bool isEndOfRun = false;
    std::uint64_t draw = 0;
    std::uint64_t sequence = 0;

    auto operator<=>(const EventKey&) const = default;
  };

  struct Timer {
    Instant start;
    Microseconds period{0};
    Task task;
    EventKey event;
  };

  using Lock = std::unique_lock<std::mutex>;

  EventKey addEvent(Instant deadline, Task event, bool isEndOfRun = false);
  EventKey addTimerEvent(Instant deadline, TimerID timer);
  TimerID addTimer(Microseconds delay, Microseconds period, Task task);
  Task takeTimerTask(TimerID timer);
  void give(Actor& actor, Task task);
  void makeRunnable(Actor& actor);
  Actor& takeNextRunnable();
  void processNextEvent(Lock& lock);
  void endRun();
  bool canSleepInPlace(Instant deadline) const;
  void handOver(Lock& lock);
  void yield(Lock& lock, Actor& self);
  void runActor(Actor& actor);
  static void runOneTask(Lock& lock, Actor& actor);
  void runMainUntilEnd(Lock& lock);
  void finishBusyActors(Lock& lock);
  bool someoneElseIsBusy() const;
  Actor& mainActor() const { return *actors.front(); }

  const std::thread::id mainThread = std::this_thread::get_id();
  mutable std::mutex mutex;
  Instant time{};
  std::uint64_t nextSequence = 1;
  TimerID nextTimer = 1;
  /// What happens at each deadline, under the lock.
  std::map<EventKey, Task> events;
  std::map<TimerID, Timer> timers;
  std::deque<Actor*> runnable;
  std::vector<std::unique_ptr<Actor>> actors;
  Actor* running = nullptr;
  bool endOfRunReached = false;
  bool ending = false;
  bool ended = false;
  std::optional<std::mt19937_64> random;
};

}  // namespace brivane
