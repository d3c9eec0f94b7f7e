#pragma once

#include <memory>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// During its life SIGTERM, and SIGINT and SIGHUP unless they were ignored before, only run
/// `handler` as a main-queue task; afterwards they do nothing. Main thread.
class TerminationSources {
 public:
  /// `machineRuntime` must outlive this.
  TerminationSources(Runtime& machineRuntime, Task signalHandler);
  TerminationSources(const TerminationSources&) = delete;
  TerminationSources& operator=(const TerminationSources&) = delete;
  ~TerminationSources();

 private:
  struct Sources;

  void listenTo(int number);
  static void signalled(void* context);

  Runtime& runtime;
  const Task handler;
  const std::unique_ptr<Sources> sources;
};

}  // namespace brivane
