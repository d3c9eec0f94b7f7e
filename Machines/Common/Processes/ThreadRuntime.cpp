// The clock is CLOCK_BOOTTIME, which advances while the machine sleeps; std::chrono's clocks stop
// then. A Mac, on which it runs in the desk's tests alone, calls that clock CLOCK_MONOTONIC.
#include "Machines/Common/Processes/ThreadRuntime.h"

#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <thread>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

#ifdef __linux__
constexpr clockid_t continuousClock = CLOCK_BOOTTIME;

timespec asTimespec(Instant instant) {
  const auto sinceStart = instant.time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceStart);
  const std::chrono::nanoseconds rest = sinceStart - seconds;
  return {static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())};
}

void sleepUntil(Instant deadline) {
  const timespec time = asTimespec(deadline);
  while (clock_nanosleep(continuousClock, TIMER_ABSTIME, &time, nullptr) == EINTR) {
  }
}

/// By default the kernel wakes sleepers up to 50 µs late, which shows in DDC/CI's many pauses.
/// Later threads inherit the setting.
void wakeSleepersInTime() {
  ::prctl(PR_SET_TIMERSLACK, 1UL);
}
#else
constexpr clockid_t continuousClock = CLOCK_MONOTONIC;
#endif

}  // namespace

class ThreadRuntime::Queue : public SerialQueue {
 public:
  ~Queue() override { end(); }

  void async(Task task) override {
    const std::lock_guard lock(mutex);
    if (ending) return;
    tasks.push_back(std::move(task));
    if (!thread.joinable()) thread = std::thread([this] { work(); });
    changed.notify_all();
  }

  void sync(const Task& task) override {
    std::unique_lock lock(mutex);
    const auto ticket = ++lastTicket;
    waiting.push_back(ticket);
    changed.wait(lock, [&] { return !busy && tasks.empty() && waiting.front() == ticket; });
    waiting.pop_front();
    runUnlocked(lock, task);
  }

  bool isIdle() {
    const std::lock_guard lock(mutex);
    return !busy && tasks.empty();
  }

  /// Waits for the running task and drops the others.
  void end() {
    std::deque<Task> dropped;
    {
      const std::lock_guard lock(mutex);
      ending = true;
      dropped.swap(tasks);
    }
    changed.notify_all();
    if (thread.joinable()) thread.join();
  }

 private:
  void work() {
    std::unique_lock lock(mutex);
    while (true) {
      changed.wait(lock, [&] { return ending || (!busy && !tasks.empty()); });
      if (ending) return;
      const Task task = std::move(tasks.front());
      tasks.pop_front();
      runUnlocked(lock, task);
    }
  }

  void runUnlocked(std::unique_lock<std::mutex>& lock, const Task& task) {
    busy = true;
    lock.unlock();
    task();
    lock.lock();
    busy = false;
    changed.notify_all();
  }

  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Task> tasks;
  std::deque<std::uint64_t> waiting;
  std::uint64_t lastTicket = 0;
  bool busy = false;
  bool ending = false;
  std::thread thread;
};

ThreadRuntime::ThreadRuntime() {
  // A closed reader ("--probe | head -1") makes writes fail; it must not end the program.
  std::signal(SIGPIPE, SIG_IGN);
#ifdef __linux__
  wakeSleepersInTime();
#endif
}

ThreadRuntime::~ThreadRuntime() {
  for (const auto& queue : queues) queue->end();
}

Instant ThreadRuntime::now() const {
  timespec time{};
  clock_gettime(continuousClock, &time);
  return Instant(std::chrono::duration_cast<Microseconds>(std::chrono::seconds(time.tv_sec) +
                                                          std::chrono::nanoseconds(time.tv_nsec)));
}

void ThreadRuntime::sleep(Microseconds duration) {
  // One microsecond more, because `now()` truncates nanoseconds.
  const Microseconds whole = duration + Microseconds(1);
#ifdef __linux__
  sleepUntil(now() + whole);
#else
  std::this_thread::sleep_for(whole);
#endif
}

bool ThreadRuntime::isMainThread() const {
  return std::this_thread::get_id() == mainThread;
}

void ThreadRuntime::async(Task task) {
  const std::lock_guard lock(mutex);
  tasks.push_back(std::move(task));
  somethingToDo.notify_all();
  wakeHost(Instant::min());
}

TimerID ThreadRuntime::after(Microseconds delay, Task task) {
  return addTimer(delay, Microseconds(0), std::move(task));
}

TimerID ThreadRuntime::every(Microseconds period, Task task) {
  if (period <= Microseconds(0)) fatal("a repeating timer needs a period above zero");
  return addTimer(period, period, std::move(task));
}

void ThreadRuntime::cancel(TimerID timer) {
  Task dropped;  // destroyed after the lock is released: the destructor may use the runtime
  const std::lock_guard lock(mutex);
  const auto found = timers.find(timer);
  if (found == timers.end()) return;
  deadlines.erase({found->second.deadline, timer});
  dropped = std::move(found->second.task);
  timers.erase(found);
}

std::shared_ptr<SerialQueue> ThreadRuntime::makeSerialQueue(const std::string&, QueueQuality) {
  endForgottenQueues();
  queues.push_back(std::make_shared<Queue>());
  return queues.back();
}

/// Nobody can give these another task.
void ThreadRuntime::endForgottenQueues() {
  std::erase_if(queues, [](const std::shared_ptr<Queue>& queue) {
    if (queue.use_count() > 1 || !queue->isIdle()) return false;
    queue->end();
    return true;
  });
}

void ThreadRuntime::run() {
  mainThread = std::this_thread::get_id();
  while (const Task task = takeNextTask()) task();
}

void ThreadRuntime::stop() {
  const std::lock_guard lock(mutex);
  stopped = true;
  somethingToDo.notify_all();
  wakeHost(Instant::min());
}

void ThreadRuntime::beginHosting(Task wakeUp) {
  const std::lock_guard lock(mutex);
  mainThread = std::this_thread::get_id();
  wake = std::move(wakeUp);
  isHostAwake = false;
  hostDeadline.reset();
  if (stopped || !tasks.empty()) {
    wakeHost(Instant::min());
  } else if (!deadlines.empty()) {
    wakeHost(deadlines.begin()->first);
  }
}

void ThreadRuntime::endHosting() {
  const std::lock_guard lock(mutex);
  wake = {};
}

/// Only what is due at the call: tasks that queue further tasks, and timers that are due again at
/// once, must not block the host's own events.
HostedTurn ThreadRuntime::runDue() {
  const Instant moment = now();
  std::unique_lock lock(mutex);
  isHostAwake = true;
  for (auto left = tasks.size(); !stopped;) {
    Task task = takeDueTimerTask(moment);
    if (!task && left > 0) {
      task = takeQueuedTask();
      --left;
    }
    if (!task) break;
    lock.unlock();
    task();
    task = {};
    lock.lock();
  }
  isHostAwake = false;
  hostDeadline.reset();
  if (!tasks.empty()) {
    hostDeadline = moment;
  } else if (!deadlines.empty()) {
    hostDeadline = deadlines.begin()->first;
  }
  return {std::exchange(stopped, false), hostDeadline};
}

TimerID ThreadRuntime::addTimer(Microseconds delay, Microseconds period, Task task) {
  const Instant start = now();
  const Instant deadline = start + std::max(delay, Microseconds(0));
  const std::lock_guard lock(mutex);
  const TimerID id = nextTimer++;
  timers.emplace(id, Timer{start, period, std::move(task), deadline});
  deadlines.emplace(deadline, id);
  somethingToDo.notify_all();
  wakeHost(deadline);
  return id;
}

/// The earliest due timer's task; empty when none is due.
Task ThreadRuntime::takeDueTimerTask(Instant moment) {
  if (deadlines.empty() || deadlines.begin()->first > moment) return {};
  const TimerID id = deadlines.begin()->second;
  deadlines.erase(deadlines.begin());
  Timer& timer = timers.at(id);
  if (timer.period == Microseconds(0)) return std::move(timers.extract(id).mapped().task);
  const auto periodsOver = (moment - timer.start) / timer.period;
  timer.deadline = timer.start + (periodsOver + 1) * timer.period;
  deadlines.emplace(timer.deadline, id);
  return timer.task;
}

/// Waits for the next main-queue task; empty once stopped. Due timers go first, so that tasks that
/// queue further tasks can't starve them.
Task ThreadRuntime::takeNextTask() {
  std::unique_lock lock(mutex);
  while (!stopped) {
    const Instant moment = now();
    if (Task due = takeDueTimerTask(moment)) return due;
    if (!tasks.empty()) return takeQueuedTask();
    if (deadlines.empty()) {
      somethingToDo.wait(lock);
    } else {
      somethingToDo.wait_for(lock, deadlines.begin()->first - moment);
    }
  }
  stopped = false;
  return {};
}

Task ThreadRuntime::takeQueuedTask() {
  Task task = std::move(tasks.front());
  tasks.pop_front();
  return task;
}

/// A host that is awake checks by itself before it sleeps.
void ThreadRuntime::wakeHost(Instant deadline) {
  if (!wake || isHostAwake || (hostDeadline && *hostDeadline <= deadline)) return;
  hostDeadline = deadline;
  wake();
}

}  // namespace brivane
