// Invalidating a timer destroys its task, whose destructor may cancel any timer: so timers are
// taken off the list and invalidated without the lock.
#include "Machines/Mac/Runtime/Timers.h"

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"

namespace brivane {

/// A timer's context, kept by the run loop until the timer is invalid.
struct MacTimers::Due {
  MacTimers& timers;
  TimerID id;
  bool isRepeating;
  Task task;
};

TimerID MacTimers::add(Microseconds delay, Microseconds period, Task task) {
  const std::lock_guard lock(mutex);
  const TimerID id = nextID++;
  auto due = std::make_unique<Due>(Due{*this, id, period > Microseconds(0), std::move(task)});
  const auto drop = [](const void* info) { delete static_cast<const Due*>(info); };
  CFRunLoopTimerContext context = {0, due.release(), nullptr, drop, nullptr};
  CFReference timer(CFRunLoopTimerCreate(kCFAllocatorDefault,
                                         CFAbsoluteTimeGetCurrent() + toSeconds(delay),
                                         toSeconds(period), 0, 0, fire, &context));
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer.get(), kCFRunLoopCommonModes);
  live.emplace(id, std::move(timer));
  return id;
}

void MacTimers::cancel(TimerID id) {
  if (const auto timer = take(id)) CFRunLoopTimerInvalidate(timer.get());
}

void MacTimers::end() {
  std::map<TimerID, CFReference<CFRunLoopTimerRef>> ended;
  {
    const std::lock_guard lock(mutex);
    ended.swap(live);
  }
  for (const auto& [id, timer] : ended) CFRunLoopTimerInvalidate(timer.get());
}

void MacTimers::fire(CFRunLoopTimerRef, void* info) {
  const AutoreleasePool pool;
  const Due& due = *static_cast<Due*>(info);
  // Copied: the task may cancel its own timer, which destroys the context.
  const auto queue = due.timers.mainQueue;
  Task task = due.task;
  const auto over = due.isRepeating ? CFReference<CFRunLoopTimerRef>() : due.timers.take(due.id);
  queue->perform(std::move(task));
}

CFReference<CFRunLoopTimerRef> MacTimers::take(TimerID id) {
  const std::lock_guard lock(mutex);
  const auto found = live.find(id);
  if (found == live.end()) return {};
  return std::move(live.extract(found).mapped());
}

}  // namespace brivane
