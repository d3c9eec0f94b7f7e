#include "Machines/Mac/Runtime/SerialQueue.h"

#include <utility>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"

namespace brivane {

MacSerialQueue::MacSerialQueue(const std::string& label, QueueQuality quality)
    : queue(dispatch_queue_create(
          label.c_str(),
          dispatch_queue_attr_make_with_qos_class(
              DISPATCH_QUEUE_SERIAL,
              quality == QueueQuality::userInitiated ? QOS_CLASS_USER_INITIATED : QOS_CLASS_UTILITY,
              0))) {}

// Not in the header: Objective-C's reference counting, in some of the sources that include it,
// refuses the call.
MacSerialQueue::~MacSerialQueue() {
  dispatch_release(queue);
}

void MacSerialQueue::async(Task task) {
  auto unlessEnded = std::make_unique<Task>([ended = hasEnded, task = std::move(task)] {
    if (!*ended) task();
  });
  dispatch_async_f(queue, unlessEnded.release(), [](void* context) {
    const AutoreleasePool pool;
    const std::unique_ptr<Task> work(static_cast<Task*>(context));
    (*work)();
  });
}

void MacSerialQueue::sync(const Task& task) {
  dispatch_sync_f(queue, const_cast<Task*>(&task), [](void* context) {
    const AutoreleasePool pool;
    (*static_cast<const Task*>(context))();
  });
}

void MacSerialQueue::end() {
  *hasEnded = true;
  dispatch_sync_f(queue, nullptr, [](void*) {});
}

}  // namespace brivane
