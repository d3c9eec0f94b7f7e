// The main run loop with its timers, dispatch's queues and its signal sources. A pass of the loop
// runs all that waits on the main queue before it looks whether it was stopped, as the real one
// does; and a loop that a task of the main queue runs leaves that queue alone.
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"
#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"

namespace brivane::fake {
namespace {

using Clock = std::chrono::steady_clock;
using Work = std::function<void()>;

constexpr CFTypeID timerKind = 210;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "Run loop: %s\n", what);
  std::abort();
}

struct Timer {
  Clock::time_point due;
  Clock::duration interval{};
  CFRunLoopTimerCallBack callout = nullptr;
  CFRunLoopTimerContext context{};
  bool isInLoop = false;
};

struct SignalSource : dispatch_source_s {
  int number = 0;
  void* context = nullptr;
  dispatch_function_t handler = nullptr;
  bool isResumed = false;
  bool isCancelled = false;
};

struct Loop {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Work> mainQueue;
  std::deque<Work> events;
  std::map<CFRunLoopTimerRef, Timer> timers;
  std::vector<SignalSource*> sources;
  bool isStopped = false;
  /// Main thread.
  bool isInMainQueue = false;
  Work meanwhile;
};

Loop& loop() {
  static Loop only;
  return only;
}

const std::thread::id mainThread = std::this_thread::get_id();
thread_local std::size_t pools = 0;

std::atomic<std::size_t> dispatchObjects = 0;
std::array<std::atomic<int>, 65> arrived{};

void signalArrived(int number) {
  ++arrived[static_cast<std::size_t>(number)];
}

/// A private queue with its thread.
struct Queue : dispatch_queue_s {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Work> works;
  bool isReleased = false;
  std::thread thread{[this] { run(); }};

  void run() {
    std::unique_lock lock(mutex);
    while (true) {
      changed.wait(lock, [this] { return isReleased || !works.empty(); });
      if (works.empty()) return;
      const Work work = std::move(works.front());
      works.pop_front();
      lock.unlock();
      work();
      lock.lock();
    }
  }

  void add(Work work) {
    const std::lock_guard lock(mutex);
    works.push_back(std::move(work));
    changed.notify_all();
  }
};

/// Whoever waits for a queue does the work on a thread of its own while the queue stands still.
struct Turn {
  std::mutex mutex;
  std::condition_variable changed;
  bool hasCome = false;
  bool isOver = false;
};

dispatch_queue_s theMainQueue;

Queue& privateQueue(dispatch_queue_t queue) {
  return *static_cast<Queue*>(queue);
}

void addToMainQueue(Work work) {
  const std::lock_guard lock(loop().mutex);
  loop().mainQueue.push_back(std::move(work));
  loop().changed.notify_all();
}

std::vector<CFRunLoopTimerRef> dueTimers() {
  const std::lock_guard lock(loop().mutex);
  std::vector<std::pair<Clock::time_point, CFRunLoopTimerRef>> due;
  for (const auto& [reference, timer] : loop().timers) {
    if (timer.isInLoop && timer.due <= Clock::now()) due.emplace_back(timer.due, reference);
  }
  std::sort(due.begin(), due.end());
  std::vector<CFRunLoopTimerRef> references;
  for (const auto& [moment, reference] : due) references.push_back(reference);
  return references;
}

void fire(CFRunLoopTimerRef reference) {
  Timer timer;
  {
    const std::lock_guard lock(loop().mutex);
    const auto found = loop().timers.find(reference);
    if (found == loop().timers.end() || !found->second.isInLoop) return;
    timer = found->second;
  }
  CFRetain(reference);
  timer.callout(reference, timer.context.info);
  if (timer.interval == Clock::duration::zero()) {
    CFRunLoopTimerInvalidate(reference);
  } else {
    const std::lock_guard lock(loop().mutex);
    const auto found = loop().timers.find(reference);
    if (found != loop().timers.end()) {
      while (found->second.due <= Clock::now()) found->second.due += timer.interval;
    }
  }
  CFRelease(reference);
}

void takeSignals() {
  std::vector<SignalSource*> sources;
  {
    const std::lock_guard lock(loop().mutex);
    sources = loop().sources;
  }
  for (SignalSource* const source : sources) {
    auto& count = arrived[static_cast<std::size_t>(source->number)];
    if (!source->isResumed || count.exchange(0) == 0) continue;
    addToMainQueue([source] {
      const auto& live = loop().sources;
      const bool isLive = std::find(live.begin(), live.end(), source) != live.end();
      if (isLive && !source->isCancelled) source->handler(source->context);
    });
  }
}

void runAll(std::deque<Work>& works) {
  std::deque<Work> batch;
  {
    const std::lock_guard lock(loop().mutex);
    batch.swap(works);
  }
  for (const Work& work : batch) work();
}

void serveMainQueue() {
  if (loop().isInMainQueue) return;
  loop().isInMainQueue = true;
  runAll(loop().mainQueue);
  loop().isInMainQueue = false;
}

void requireMain(CFRunLoopRef asked) {
  if (asked != CFRunLoopGetMain()) fail("another loop than the main one");
}

/// Until something may have to be done; signals come without notice.
void wait() {
  std::unique_lock lock(loop().mutex);
  const bool isQueueWaiting = !loop().isInMainQueue && !loop().mainQueue.empty();
  if (loop().isStopped || isQueueWaiting || !loop().events.empty()) return;
  auto until = Clock::now() + std::chrono::milliseconds(5);
  for (const auto& [reference, timer] : loop().timers) {
    if (timer.isInLoop) until = std::min(until, timer.due);
  }
  loop().changed.wait_until(lock, until);
}

void dropContext(Timer& timer) {
  if (timer.context.release != nullptr) timer.context.release(timer.context.info);
  timer.context = {};
}

}  // namespace

bool isMainThread() {
  return std::this_thread::get_id() == mainThread;
}

std::size_t openPools() {
  return pools;
}

void postToMainLoop(std::function<void()> event) {
  const std::lock_guard lock(loop().mutex);
  loop().events.push_back(std::move(event));
  loop().changed.notify_all();
}

void whenLoopNextBegins(std::function<void()> meanwhile) {
  loop().meanwhile = std::move(meanwhile);
}

void drainMainQueue() {
  while (true) {
    {
      const std::lock_guard lock(loop().mutex);
      loop().events.clear();
      if (loop().mainQueue.empty()) break;
    }
    serveMainQueue();
  }
  loop().isStopped = false;
  for (auto& count : arrived) count = 0;
}

std::size_t liveDispatchObjects() {
  return dispatchObjects;
}

}  // namespace brivane::fake

using namespace brivane::fake;  // NOLINT

struct dispatch_source_type_s {};

extern "C" {

// Run loop

const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("common modes");

CFRunLoopRef CFRunLoopGetMain(void) {
  return reinterpret_cast<CFRunLoopRef>(&loop());
}

/// Being stopped is a matter of one run: who stops a loop that doesn't run stops nothing.
void CFRunLoopRun(void) {
  if (!isMainThread()) fail("the loop of another thread");
  if (const Work meanwhile = std::exchange(loop().meanwhile, {})) meanwhile();
  {
    const std::lock_guard lock(loop().mutex);
    loop().isStopped = false;
  }
  while (true) {
    for (CFRunLoopTimerRef timer : dueTimers()) fire(timer);
    takeSignals();
    serveMainQueue();
    runAll(loop().events);
    {
      const std::lock_guard lock(loop().mutex);
      if (std::exchange(loop().isStopped, false)) return;
    }
    wait();
  }
}

void CFRunLoopStop(CFRunLoopRef stopped) {
  requireMain(stopped);
  const std::lock_guard lock(loop().mutex);
  loop().isStopped = true;
  loop().changed.notify_all();
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void) {
  return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callout,
                                       CFRunLoopTimerContext* context) {
  if (flags != 0 || order != 0) fail("a timer with flags or an order, which are to be 0");
  if (context->version != 0 || context->retain != nullptr) fail("a context of another kind");
  FakeObject* const object = makeObject(timerKind);
  const auto reference = reinterpret_cast<CFRunLoopTimerRef>(object);
  const auto asDuration = [](double seconds) {
    return std::chrono::ceil<Clock::duration>(std::chrono::duration<double>(seconds));
  };
  const std::lock_guard lock(loop().mutex);
  loop().timers[reference] = {Clock::time_point(asDuration(fireDate)), asDuration(interval),
                              callout, *context, false};
  object->whenGone = [reference] {
    Timer timer;
    {
      const std::lock_guard guard(loop().mutex);
      timer = loop().timers.extract(reference).mapped();
    }
    dropContext(timer);
  };
  return reference;
}

void CFRunLoopAddTimer(CFRunLoopRef added, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  requireMain(added);
  if (mode != kCFRunLoopCommonModes) fail("a timer that stands still while a menu is open");
  CFRetain(timer);
  const std::lock_guard lock(loop().mutex);
  loop().timers.at(timer).isInLoop = true;
  loop().changed.notify_all();
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef reference) {
  Timer invalid;
  {
    const std::lock_guard lock(loop().mutex);
    Timer& timer = loop().timers.at(reference);
    invalid = timer;
    timer.context = {};
    timer.isInLoop = false;
  }
  dropContext(invalid);
  if (invalid.isInLoop) CFRelease(reference);
}

// Autorelease pools, where there is no Objective-C

__attribute__((weak)) void* objc_autoreleasePoolPush(void) {
  return reinterpret_cast<void*>(++pools);
}

__attribute__((weak)) void objc_autoreleasePoolPop(void* pool) {
  if (reinterpret_cast<std::size_t>(pool) != pools) fail("a pool was closed that isn't the last");
  --pools;
}

// Dispatch

const struct dispatch_source_type_s _dispatch_source_type_signal = {};

dispatch_queue_t dispatch_get_main_queue(void) {
  return &theMainQueue;
}

dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes,
                                                              dispatch_qos_class_t quality, int) {
  if (attributes != DISPATCH_QUEUE_SERIAL) fail("a queue that isn't serial");
  mac().note("quality " + std::to_string(quality));
  return nullptr;
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t) {
  mac().note("queue " + std::string(label));
  ++dispatchObjects;
  return new Queue;
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  Work bound = [context, work] { work(context); };
  if (queue == &theMainQueue) return addToMainQueue(std::move(bound));
  privateQueue(queue).add(std::move(bound));
}

void dispatch_sync_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  if (queue == &theMainQueue) fail("the main queue would wait for itself");
  const auto turn = std::make_shared<Turn>();
  privateQueue(queue).add([turn] {
    std::unique_lock lock(turn->mutex);
    turn->hasCome = true;
    turn->changed.notify_all();
    turn->changed.wait(lock, [&] { return turn->isOver; });
  });
  {
    std::unique_lock lock(turn->mutex);
    turn->changed.wait(lock, [&] { return turn->hasCome; });
  }
  work(context);
  const std::lock_guard lock(turn->mutex);
  turn->isOver = true;
  turn->changed.notify_all();
}

void dispatch_release(dispatch_object_t object) {
  auto& sources = loop().sources;
  const auto source = std::find(sources.begin(), sources.end(), object);
  --dispatchObjects;
  if (source != sources.end()) {
    if (!(*source)->isResumed) fail("a source was released before it was resumed");
    const std::lock_guard lock(loop().mutex);
    delete *source;
    sources.erase(source);
    return;
  }
  auto* const queue = static_cast<Queue*>(object);
  {
    const std::lock_guard lock(queue->mutex);
    queue->isReleased = true;
    queue->changed.notify_all();
  }
  queue->thread.join();
  delete queue;
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle,
                                         uintptr_t mask, dispatch_queue_t queue) {
  if (type != DISPATCH_SOURCE_TYPE_SIGNAL || mask != 0) fail("a source that isn't of signals");
  if (queue != &theMainQueue) fail("a signal that isn't told on the main queue");
  auto* const source = new SignalSource;
  source->number = static_cast<int>(handle);
  mac().note("source of signal " + std::to_string(source->number));
  ++dispatchObjects;
  const std::lock_guard lock(loop().mutex);
  loop().sources.push_back(source);
  return source;
}

void dispatch_set_context(dispatch_object_t object, void* context) {
  static_cast<SignalSource*>(object)->context = context;
}

void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler) {
  static_cast<SignalSource*>(source)->handler = handler;
}

void dispatch_resume(dispatch_object_t object) {
  auto* const source = static_cast<SignalSource*>(object);
  mac().note("resume signal " + std::to_string(source->number));
  source->isResumed = true;
}

void dispatch_source_cancel(dispatch_source_t source) {
  static_cast<SignalSource*>(source)->isCancelled = true;
}

/// A source hears of signals that are ignored, which nobody else can: the ignoring is noted, and
/// the signal counted.
void (*fake_signal(int number, void (*disposition)(int)))(int) {
  if (disposition == SIG_DFL) fail("a signal that isn't ignored ends the process");
  const bool isIgnoring = disposition == SIG_IGN;
  mac().note((isIgnoring ? "ignore signal " : "handle signal ") + std::to_string(number));
  const auto before = ::signal(number, isIgnoring ? signalArrived : disposition);
  return before == signalArrived ? SIG_IGN : before;
}

// The clock

/// What the Mac's other clocks do in a sleep, or when they are set, isn't what the program counts
/// on.
int fake_clock_gettime(clockid_t clock, timespec* time) noexcept {
  if (clock != CLOCK_MONOTONIC_RAW) fail("a clock that stands still while the machine sleeps");
  const int status = ::clock_gettime(clock, time);
  time->tv_sec += mac().secondsAsleep;
  return status;
}
}
