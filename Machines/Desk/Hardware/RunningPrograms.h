#pragma once

#include <optional>
#include <set>
#include <vector>

#include "Machines/Common/Processes/AnnouncedProcess.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Machines/Desk/State/StateFolder.h"

namespace brivane {

/// The programs on a desk. In memory they have simulated process IDs from 501 up; with a folder
/// they are real processes, of which only one can be announced. Main thread.
class RunningPrograms {
 public:
  RunningPrograms(StateFolder* stateFolder, const Tracer& hardwareTracer);

  ProcessID nextID();
  std::vector<ProcessID> announced();
  /// False when another process is announced already.
  bool announce(ProcessID program);
  void end(ProcessID program);

 private:
  StateFolder* const folder;
  const Tracer& tracer;
  std::optional<AnnouncedProcess> process;
  std::set<ProcessID> inMemory;
  ProcessID lastID = 500;
};

}  // namespace brivane
