// The run loop serves dispatch's main queue in all common modes, but all waiting blocks at once,
// while `stop()` promises that no task runs after the current one. So tasks wait in a queue of our
// own, and each block given to dispatch only takes the next task.
#include "Machines/Mac/Runtime/Runtime.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>

#include <atomic>
#include <csignal>
#include <ctime>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"
#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {

class MacRuntime::MainQueue : public std::enable_shared_from_this<MainQueue> {
 public:
  void add(Task task) {
    const std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
    callForNext();
  }

  /// Runs a due timer's task, or queues it after `stop()`.
  void perform(Task task) {
    if (isStopped) return add(std::move(task));
    task();
  }

  void run() {
    {
      const std::lock_guard lock(mutex);
      // Their calls were used up while the queue was stopped.
      if (!isStopped) {
        for (std::size_t i = 0; i < tasks.size(); ++i) callForNext();
      }
    }
    while (!isStopped) CFRunLoopRun();
    isStopped = false;
  }

  /// Stops the run loop from within: a stop from another thread just before the loop starts would
  /// be lost.
  void stop() {
    isStopped = true;
    dispatch_async_f(dispatch_get_main_queue(), nullptr,
                     [](void*) { CFRunLoopStop(CFRunLoopGetMain()); });
  }

  void end() {
    std::deque<Task> dropped;
    const std::lock_guard lock(mutex);
    isStopped = true;
    dropped.swap(tasks);
  }

 private:
  using Owner = std::shared_ptr<MainQueue>;

  void callForNext() {
    auto owner = std::make_unique<Owner>(shared_from_this());
    dispatch_async_f(dispatch_get_main_queue(), owner.release(), runNext);
  }

  static void runNext(void* context) {
    const AutoreleasePool pool;
    const std::unique_ptr<Owner> owner(static_cast<Owner*>(context));
    if (const auto task = (*owner)->takeNext()) (*task)();
  }

  std::optional<Task> takeNext() {
    const std::lock_guard lock(mutex);
    if (isStopped || tasks.empty()) return std::nullopt;
    Task task = std::move(tasks.front());
    tasks.pop_front();
    return task;
  }

  std::mutex mutex;
  std::deque<Task> tasks;
  std::atomic<bool> isStopped = false;
};

class MacRuntime::Timers {
 public:
  explicit Timers(std::shared_ptr<MainQueue> queue) : mainQueue(std::move(queue)) {}
  Timers(const Timers&) = delete;
  Timers& operator=(const Timers&) = delete;

  /// Invalidating destroys the tasks, whose destructors may call `cancel` for any timer.
  void end() {
    std::map<TimerID, CFReference<CFRunLoopTimerRef>> ended;
    {
      const std::lock_guard lock(mutex);
      ended.swap(live);
    }
    for (const auto& [id, timer] : ended) CFRunLoopTimerInvalidate(timer.get());
  }

  TimerID add(Microseconds delay, Microseconds period, Task task) {
    const std::lock_guard lock(mutex);
    const TimerID id = nextID++;
    auto due = std::make_unique<Due>(Due{*this, id, period > Microseconds(0), std::move(task)});
    CFRunLoopTimerContext context = {0, due.release(), nullptr, drop, nullptr};
    CFReference timer(CFRunLoopTimerCreate(kCFAllocatorDefault,
                                           CFAbsoluteTimeGetCurrent() + toSeconds(delay),
                                           toSeconds(period), 0, 0, fire, &context));
    CFRunLoopAddTimer(CFRunLoopGetMain(), timer.get(), kCFRunLoopCommonModes);
    live.emplace(id, std::move(timer));
    return id;
  }

  void cancel(TimerID id) {
    // Invalidating destroys the task, whose destructor may call `cancel`.
    if (const auto timer = take(id)) CFRunLoopTimerInvalidate(timer.get());
  }

 private:
  /// A timer's context, kept by the run loop until the timer is invalid.
  struct Due {
    Timers& timers;
    TimerID id;
    bool isRepeating;
    Task task;
  };

  static void fire(CFRunLoopTimerRef, void* info) {
    const AutoreleasePool pool;
    const Due& due = *static_cast<Due*>(info);
    // Copied: the task may cancel its own timer, which destroys the context.
    const auto queue = due.timers.mainQueue;
    Task task = due.task;
    const auto over = due.isRepeating ? CFReference<CFRunLoopTimerRef>() : due.timers.take(due.id);
    queue->perform(std::move(task));
  }

  static void drop(const void* info) { delete static_cast<const Due*>(info); }

  CFReference<CFRunLoopTimerRef> take(TimerID id) {
    const std::lock_guard lock(mutex);
    const auto found = live.find(id);
    if (found == live.end()) return {};
    return std::move(live.extract(found).mapped());
  }

  const std::shared_ptr<MainQueue> mainQueue;
  std::mutex mutex;
  std::map<TimerID, CFReference<CFRunLoopTimerRef>> live;
  TimerID nextID = 1;
};

class MacRuntime::Queue : public SerialQueue {
 public:
  Queue(const std::string& label, QueueQuality quality)
      : queue(dispatch_queue_create(
            label.c_str(), dispatch_queue_attr_make_with_qos_class(
                               DISPATCH_QUEUE_SERIAL,
                               quality == QueueQuality::userInitiated ? QOS_CLASS_USER_INITIATED
                                                                      : QOS_CLASS_UTILITY,
                               0))) {}
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;
  ~Queue() override { dispatch_release(queue); }

  void async(Task task) override {
    auto work = std::make_unique<Work>(Work{hasEnded, std::move(task)});
    dispatch_async_f(queue, work.release(), runWork);
  }

  void sync(const Task& task) override {
    dispatch_sync_f(queue, const_cast<Task*>(&task), [](void* context) {
      const AutoreleasePool pool;
      (*static_cast<const Task*>(context))();
    });
  }

  /// Waits for the running task and drops the others.
  void end() {
    *hasEnded = true;
    dispatch_sync_f(queue, nullptr, [](void*) {});
  }

 private:
  using Flag = std::shared_ptr<std::atomic<bool>>;

  struct Work {
    Flag hasEnded;
    Task task;
  };

  static void runWork(void* context) {
    const AutoreleasePool pool;
    const std::unique_ptr<Work> work(static_cast<Work*>(context));
    if (!*work->hasEnded) work->task();
  }

  const Flag hasEnded = std::make_shared<std::atomic<bool>>(false);
  const dispatch_queue_t queue;
};

MacRuntime::MacRuntime()
    : mainQueue(std::make_shared<MainQueue>()), timers(std::make_unique<Timers>(mainQueue)) {
  // A closed reader ("--probe | head -1") makes writes fail; it must not end the program.
  std::signal(SIGPIPE, SIG_IGN);
}

MacRuntime::~MacRuntime() {
  for (const auto& queue : queues) queue->end();
  mainQueue->end();
  timers->end();
}

Instant MacRuntime::now() const {
  // On the Mac this clock advances while the machine sleeps, and setting the time doesn't change
  // it.
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC_RAW, &time);
  return Instant(std::chrono::duration_cast<Microseconds>(std::chrono::seconds(time.tv_sec) +
                                                          std::chrono::nanoseconds(time.tv_nsec)));
}

void MacRuntime::sleep(Microseconds duration) {
  const Instant end = now() + duration;
  for (auto left = duration; left > Microseconds(0); left = end - now()) {
    std::this_thread::sleep_for(left);
  }
}

bool MacRuntime::isMainThread() const {
  return std::this_thread::get_id() == mainThread;
}

void MacRuntime::async(Task task) {
  mainQueue->add(std::move(task));
}

TimerID MacRuntime::after(Microseconds delay, Task task) {
  return timers->add(delay, Microseconds(0), std::move(task));
}

TimerID MacRuntime::every(Microseconds period, Task task) {
  if (period <= Microseconds(0)) fatal("a repeating timer needs a period above zero");
  return timers->add(period, period, std::move(task));
}

void MacRuntime::cancel(TimerID timer) {
  timers->cancel(timer);
}

std::shared_ptr<SerialQueue> MacRuntime::makeSerialQueue(const std::string& label,
                                                         QueueQuality quality) {
  queues.push_back(std::make_shared<Queue>(label, quality));
  return queues.back();
}

void MacRuntime::run() {
  mainQueue->run();
}

void MacRuntime::stop() {
  mainQueue->stop();
}

}  // namespace brivane
