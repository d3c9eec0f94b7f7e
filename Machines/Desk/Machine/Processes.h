#pragma once

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

using DeskTool = FinishedProcess (*)(const std::vector<std::string>& arguments,
                                     DeskHardware& hardware);

/// The desk's tools. Never runs anything on the real machine.
class DeskProcesses : public ProcessRunner {
 public:
  DeskProcesses(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime)
      : hardware(deskHardware), faults(machineFaults), runtime(machineRuntime) {}

  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

 private:
  ProcessResult runTool(const std::string& executable, const std::vector<std::string>& arguments);
  ProcessResult runPresent(ToolPresence presence, DeskTool tool,
                           const std::vector<std::string>& arguments);

  DeskHardware& hardware;
  Faults& faults;
  Runtime& runtime;
};

}  // namespace brivane
