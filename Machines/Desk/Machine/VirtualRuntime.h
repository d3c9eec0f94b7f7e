#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// A Runtime whose time is a number. Every queue is an actor; exactly one actor runs at a time, and
/// control passes only at `sleep`, at `sync` and at the end of a task. When no actor can go on,
/// time jumps to the next deadline. Actors that can go on take turns in the order in which they
/// became able to; equal deadlines are met in the order in which they were set, or, with a seed, in
/// an order drawn from it. One program and one seed give one execution, to the microsecond.
///
/// The thread that makes the runtime is its main thread. It may use the runtime without being
/// inside `run()` or `runFor()`: main-queue tasks then wait until it is. The clock starts at zero.
class VirtualRuntime : public Runtime {
 public:
  VirtualRuntime();
  explicit VirtualRuntime(std::uint64_t seed);
  /// Lets tasks that are running on other queues come to their end.
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
  /// Returns on `stop()`; it is a programming error if nothing is left that could call it. A task
  /// of the main queue may also leave it by an exception: that is a simulated process that ends
  /// there.
  void run() override;
  void stop() override;

  /// Main thread: runs everything that is due until `duration` from now, and leaves the clock
  /// there.
  void runFor(Microseconds duration);

  /// Main thread: runs everything that is due at this moment, on all queues.
  void settle() { runFor(Microseconds(0)); }

  /// Main thread: timers that are still set.
  std::size_t timerCount() const;

 private:
  struct Actor;
  class Queue;
  enum class EventKind { timer, wake, endOfRun };

  struct Event {
    EventKind kind = EventKind::timer;
    TimerID timer = 0;
    Actor* actor = nullptr;
  };

  /// Deadline first; then, at equal deadlines, the end of a run last; then the order of setting.
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
    std::optional<EventKey> pendingEvent;
  };

  using Lock = std::unique_lock<std::mutex>;

  EventKey addEvent(Instant deadline, Event event);
  TimerID addTimer(Microseconds delay, Microseconds period, Task task);
  Task takeTimerTask(TimerID timer);
  void rearm(TimerID id, Timer& timer);
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
  std::map<EventKey, Event> events;
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
