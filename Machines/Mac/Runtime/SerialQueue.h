#pragma once

#include <dispatch/dispatch.h>

#include <atomic>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// A serial queue of dispatch's.
class MacSerialQueue : public SerialQueue {
 public:
  MacSerialQueue(const std::string& label, QueueQuality quality);
  MacSerialQueue(const MacSerialQueue&) = delete;
  MacSerialQueue& operator=(const MacSerialQueue&) = delete;
  ~MacSerialQueue() override;

  void async(Task task) override;
  void sync(const Task& task) override;

  /// Waits for the running task and drops the others.
  void end();

 private:
  const std::shared_ptr<std::atomic<bool>> hasEnded = std::make_shared<std::atomic<bool>>(false);
  const dispatch_queue_t queue;
};

}  // namespace brivane
