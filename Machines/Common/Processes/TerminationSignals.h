#pragma once

#include <memory>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// While it exists, SIGTERM, and SIGINT and SIGHUP unless they were ignored before, do nothing but
/// put a task on the main queue; afterwards they do nothing: a program that was asked to end twice
/// still ends in its own way. One at a time in a process. Main thread; it must end before the
/// Runtime, which has to be one of real time.
class TerminationSignals {
 public:
  TerminationSignals(Runtime& machineRuntime, Task handler);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

 private:
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
  const std::shared_ptr<SerialQueue> queue;
};

}  // namespace brivane
