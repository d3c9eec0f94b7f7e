#pragma once

#include <memory>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// During its life SIGTERM, and SIGINT and SIGHUP unless they were ignored before, only run
/// `handler` as a main-queue task; afterwards they do nothing, so that a second signal doesn't
/// interrupt the program's orderly end. One object at a time in a process. Main thread; destroy it
/// before the Runtime, which must be one of real time.
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
