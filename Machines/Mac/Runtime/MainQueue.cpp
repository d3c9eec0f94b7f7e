// The run loop serves dispatch's main queue in all common modes, but all waiting blocks at once,
// while `stop()` promises that no task runs after the current one. So tasks wait in a queue of our
// own, and each block given to dispatch only takes the next task.
#include "Machines/Mac/Runtime/MainQueue.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>

#include <utility>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"

namespace brivane {

void MacMainQueue::add(Task task) {
  const std::lock_guard lock(mutex);
  tasks.push_back(std::move(task));
  callForNext();
}

void MacMainQueue::perform(Task task) {
  if (isStopped) return add(std::move(task));
  task();
}

void MacMainQueue::run() {
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

/// Stops the run loop from within: a stop from another thread just before the loop starts would be
/// lost.
void MacMainQueue::stop() {
  isStopped = true;
  dispatch_async_f(dispatch_get_main_queue(), nullptr,
                   [](void*) { CFRunLoopStop(CFRunLoopGetMain()); });
}

void MacMainQueue::end() {
  std::deque<Task> dropped;
  const std::lock_guard lock(mutex);
  isStopped = true;
  dropped.swap(tasks);
}

void MacMainQueue::callForNext() {
  auto kept = std::make_unique<Owner>(shared_from_this());
  dispatch_async_f(dispatch_get_main_queue(), kept.release(), [](void* context) {
    const AutoreleasePool pool;
    const std::unique_ptr<Owner> owner(static_cast<Owner*>(context));
    if (const Task task = (*owner)->takeNext()) task();
  });
}

/// The next task; empty when there is none or the queue is stopped.
Task MacMainQueue::takeNext() {
  const std::lock_guard lock(mutex);
  if (isStopped || tasks.empty()) return {};
  Task task = std::move(tasks.front());
  tasks.pop_front();
  return task;
}

}  // namespace brivane
