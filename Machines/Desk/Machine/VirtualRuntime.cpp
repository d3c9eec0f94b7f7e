// Each actor but the main one has a thread, so that a task can sleep in its middle; a baton
// (`running`) lets only one thread run. Most sleeps need no thread switch: when nothing is due
// before the sleeper wakes, only the clock advances.
#include "Machines/Desk/Machine/VirtualRuntime.h"

#include <algorithm>
#include <thread>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {

struct VirtualRuntime::Actor {
  std::string label;
  std::deque<Task> tasks;
  std::condition_variable turn;
  std::thread thread;
  /// Queued in `runnable`.
  bool isRunnable = false;
  /// Inside a task, asleep or not. The main actor counts as busy outside `run`.
  bool isBusy = false;
};

class VirtualRuntime::Queue : public SerialQueue {
 public:
  Queue(VirtualRuntime& owner, Actor& queueActor) : runtime(owner), actor(queueActor) {}

  void async(Task task) override {
    const Lock lock(runtime.mutex);
    runtime.give(actor, std::move(task));
  }

  void sync(const Task& task) override {
    Lock lock(runtime.mutex);
    Actor& caller = *runtime.running;
    if (&caller == &actor) {
      lock.unlock();
      fatal("a queue waited for itself: " + actor.label);
    }
    runtime.give(actor, [this, &task, &caller] {
      task();
      const Lock inner(runtime.mutex);
      runtime.makeRunnable(caller);
    });
    runtime.yield(lock, caller);
  }

 private:
  VirtualRuntime& runtime;
  Actor& actor;
};

VirtualRuntime::VirtualRuntime() {
  actors.push_back(std::make_unique<Actor>());
  running = &mainActor();
  running->isBusy = true;
}

VirtualRuntime::VirtualRuntime(std::uint64_t seed) : VirtualRuntime() {
  random.emplace(seed);
}

VirtualRuntime::~VirtualRuntime() {
  // Destroying a task may use the runtime, so destroy tasks without the lock.
  std::map<TimerID, Timer> droppedTimers;
  {
    Lock lock(mutex);
    ending = true;
    droppedTimers.swap(timers);
    finishBusyActors(lock);
    ended = true;
  }
  for (const auto& actor : actors) actor->turn.notify_all();
  for (const auto& actor : actors) {
    if (actor->thread.joinable()) actor->thread.join();
  }
  for (const auto& actor : actors) actor->tasks.clear();
}

Instant VirtualRuntime::now() const {
  const Lock lock(mutex);
  return time;
}

void VirtualRuntime::sleep(Microseconds duration) {
  Lock lock(mutex);
  const Instant deadline = time + std::max(duration, Microseconds(0));
  if (canSleepInPlace(deadline)) {
    time = deadline;
    return;
  }
  Actor& self = *running;
  addEvent(deadline, [this, &self] { makeRunnable(self); });
  yield(lock, self);
}

bool VirtualRuntime::isMainThread() const {
  return std::this_thread::get_id() == mainThread;
}

void VirtualRuntime::async(Task task) {
  const Lock lock(mutex);
  give(mainActor(), std::move(task));
}

TimerID VirtualRuntime::after(Microseconds delay, Task task) {
  return addTimer(delay, Microseconds(0), std::move(task));
}

TimerID VirtualRuntime::every(Microseconds period, Task task) {
  if (period <= Microseconds(0)) fatal("a repeating timer needs a period above zero");
  return addTimer(period, period, std::move(task));
}

void VirtualRuntime::cancel(TimerID timer) {
  Task dropped;  // destroyed after the lock is released, as in the destructor
  const Lock lock(mutex);
  const auto found = timers.find(timer);
  if (found == timers.end()) return;
  events.erase(found->second.event);
  dropped = std::move(found->second.task);
  timers.erase(found);
}

std::shared_ptr<SerialQueue> VirtualRuntime::makeSerialQueue(const std::string& label,
                                                             QueueQuality) {
  const Lock lock(mutex);
  actors.push_back(std::make_unique<Actor>());
  Actor& actor = *actors.back();
  actor.label = label;
  return std::make_shared<Queue>(*this, actor);
}

void VirtualRuntime::run() {
  Lock lock(mutex);
  runMainUntilEnd(lock);
}

void VirtualRuntime::stop() {
  const Lock lock(mutex);
  endRun();
}

void VirtualRuntime::runFor(Microseconds duration) {
  Lock lock(mutex);
  const EventKey end = addEvent(
      time + duration, [this] { endRun(); }, true);
  runMainUntilEnd(lock);
  events.erase(end);
}

std::size_t VirtualRuntime::timerCount() const {
  const Lock lock(mutex);
  return timers.size();
}

VirtualRuntime::EventKey VirtualRuntime::addEvent(Instant deadline, Task event, bool isEndOfRun) {
  const std::uint64_t draw = random ? (*random)() : 0;
  const EventKey key{deadline, isEndOfRun, draw, nextSequence++};
  events.emplace(key, std::move(event));
  return key;
}

/// Makes a due timer a main-queue task, which can still be cancelled.
VirtualRuntime::EventKey VirtualRuntime::addTimerEvent(Instant deadline, TimerID id) {
  return addEvent(deadline, [this, id] { give(mainActor(), [this, id] { takeTimerTask(id)(); }); });
}

TimerID VirtualRuntime::addTimer(Microseconds delay, Microseconds period, Task task) {
  const Lock lock(mutex);
  const TimerID id = nextTimer++;
  const EventKey event = addTimerEvent(time + std::max(delay, Microseconds(0)), id);
  timers.emplace(id, Timer{time, period, std::move(task), event});
  return id;
}

/// The task of a timer that fired; nothing when it was cancelled before its turn on the main queue.
Task VirtualRuntime::takeTimerTask(TimerID id) {
  const Lock lock(mutex);
  const auto found = timers.find(id);
  if (found == timers.end()) return [] {};
  Timer& timer = found->second;
  if (timer.period == Microseconds(0)) return std::move(timers.extract(found).mapped().task);
  const auto periodsOver = (time - timer.start) / timer.period;
  timer.event = addTimerEvent(timer.start + (periodsOver + 1) * timer.period, id);
  return timer.task;
}

void VirtualRuntime::give(Actor& actor, Task task) {
  actor.tasks.push_back(std::move(task));
  if (!actor.isBusy) makeRunnable(actor);
}

void VirtualRuntime::makeRunnable(Actor& actor) {
  if (actor.isRunnable) return;
  actor.isRunnable = true;
  runnable.push_back(&actor);
}

VirtualRuntime::Actor& VirtualRuntime::takeNextRunnable() {
  const std::size_t index = random ? (*random)() % runnable.size() : 0;
  const auto chosen = runnable.begin() + static_cast<std::ptrdiff_t>(index);
  Actor& actor = **chosen;
  runnable.erase(chosen);
  actor.isRunnable = false;
  return actor;
}

void VirtualRuntime::processNextEvent(Lock& lock) {
  if (events.empty()) {
    lock.unlock();
    fatal("every queue waits, and nothing is left that could happen");
  }
  const auto event = events.extract(events.begin());
  time = std::max(time, event.key().deadline);
  event.mapped()();
}

void VirtualRuntime::endRun() {
  endOfRunReached = true;
  if (!mainActor().isBusy) makeRunnable(mainActor());
}

bool VirtualRuntime::canSleepInPlace(Instant deadline) const {
  return runnable.empty() && (events.empty() || events.begin()->first.deadline > deadline);
}

/// Gives the baton to the next runnable actor, advancing time while there is none.
void VirtualRuntime::handOver(Lock& lock) {
  while (runnable.empty()) processNextEvent(lock);
  Actor& next = takeNextRunnable();
  running = &next;
  if (&next != &mainActor() && !next.thread.joinable()) {
    next.thread = std::thread([this, &next] { runActor(next); });
  }
  next.turn.notify_one();
}

/// Lets other actors run; returns when `self` is runnable again and has its turn.
void VirtualRuntime::yield(Lock& lock, Actor& self) {
  handOver(lock);
  self.turn.wait(lock, [&] { return running == &self; });
}

void VirtualRuntime::runActor(Actor& actor) {
  Lock lock(mutex);
  while (true) {
    actor.turn.wait(lock, [&] { return running == &actor || ended; });
    if (ended) return;
    runOneTask(lock, actor);
    if (!actor.tasks.empty()) makeRunnable(actor);
    if (ending && !someoneElseIsBusy()) makeRunnable(mainActor());
    handOver(lock);
  }
}

void VirtualRuntime::runOneTask(Lock& lock, Actor& actor) {
  Task task = std::move(actor.tasks.front());
  actor.tasks.pop_front();
  actor.isBusy = true;
  lock.unlock();
  task();
  task = nullptr;
  lock.lock();
  actor.isBusy = false;
}

void VirtualRuntime::runMainUntilEnd(Lock& lock) {
  Actor& main = mainActor();
  main.isBusy = false;
  endOfRunReached = false;
  while (!endOfRunReached) {
    if (!main.tasks.empty()) makeRunnable(main);
    yield(lock, main);
    if (!endOfRunReached && !main.tasks.empty()) runOneTask(lock, main);
  }
  main.isBusy = true;
}

void VirtualRuntime::finishBusyActors(Lock& lock) {
  while (someoneElseIsBusy()) yield(lock, mainActor());
}

bool VirtualRuntime::someoneElseIsBusy() const {
  return std::any_of(actors.begin() + 1, actors.end(),
                     [](const auto& actor) { return actor->isBusy; });
}

}  // namespace brivane
