#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// The main queue of a MacRuntime, served by the main run loop.
class MacMainQueue : public std::enable_shared_from_this<MacMainQueue> {
 public:
  void add(Task task);

  /// Runs a due timer's task, or queues it after `stop()`.
  void perform(Task task);

  void run();
  void stop();

  /// Drops all tasks.
  void end();

 private:
  using Owner = std::shared_ptr<MacMainQueue>;

  void callForNext();
  Task takeNext();

  std::mutex mutex;
  std::deque<Task> tasks;
  std::atomic<bool> isStopped = false;
};

}  // namespace brivane
