#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "Machines/Mac/CoreFoundation/CFReference.h"
#include "Machines/Mac/Runtime/MainQueue.h"

namespace brivane {

/// The timers of a MacRuntime. The main run loop fires them in all common modes.
class MacTimers {
 public:
  explicit MacTimers(std::shared_ptr<MacMainQueue> runtimeMainQueue)
      : mainQueue(std::move(runtimeMainQueue)) {}

  /// A period of 0: the timer fires once.
  TimerID add(Microseconds delay, Microseconds period, Task task);

  void cancel(TimerID timer);

  /// Cancels all timers.
  void end();

 private:
  struct Due;

  static void fire(CFRunLoopTimerRef timer, void* info);
  CFReference<CFRunLoopTimerRef> take(TimerID id);

  const std::shared_ptr<MacMainQueue> mainQueue;
  std::mutex mutex;
  std::map<TimerID, CFReference<CFRunLoopTimerRef>> live;
  TimerID nextID = 1;
};

}  // namespace brivane
