#pragma once

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk's tools. Never runs anything on the real machine.
class DeskProcesses : public ProcessRunner {
 public:
  DeskProcesses(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults) {}

  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

 private:
  ProcessResult runTool(const std::string& executable, const std::vector<std::string>& arguments);

  DeskHardware& hardware;
  Faults& faults;
};

}  // namespace brivane
