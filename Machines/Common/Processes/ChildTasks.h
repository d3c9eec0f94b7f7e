#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <string>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// How a task ended in its child process.
struct ChildTaskEnd {
  enum class Kind { done, crashed, overdue };

  Kind kind = Kind::crashed;
  /// What the task returned, when done.
  std::string result;
  /// Of a crash, for people: "Aborted", "exit status 3".
  std::string reason;
  /// Of the child and of its own children.
  Microseconds processorTime{0};
};

/// Runs functions in forked copies of this process, several at a time: a crash or a hang ends one
/// of them, not the process. One thread, the only one when `start` is called.
class ChildTasks {
 public:
  using Task = std::function<std::string()>;
  using Ended = std::function<void(const ChildTaskEnd& end)>;

  /// A task that takes longer than `limitSeconds` of real time is overdue, and ended.
  ChildTasks(std::size_t most, unsigned limitSeconds);
  /// Ends all tasks.
  ~ChildTasks();
  ChildTasks(const ChildTasks&) = delete;
  ChildTasks& operator=(const ChildTasks&) = delete;

  /// Starts the task, once fewer than `most` run. `start` and `finish` call `ended` here; neither
  /// may be called from there.
  void start(const Task& task, Ended ended);
  /// Waits until all tasks have ended.
  void finish();

 private:
  struct Running;

  void awaitOutput();
  static ChildTaskEnd endOf(Running& task);

  const std::size_t mostAtOnce;
  const unsigned limit;
  std::list<Running> running;
};

/// Runs one task to its end.
ChildTaskEnd runChildTask(const ChildTasks::Task& task, unsigned limitSeconds);

}  // namespace brivane
