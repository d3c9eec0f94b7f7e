#pragma once

#include "BrivaneCore/Seams/Applications.h"
#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/DeskHardware.h"
#include "Machines/Desk/Faults.h"

namespace brivane {

/// The tools that the desk has. Nothing is ever run on the real machine.
class DeskProcesses : public ProcessRunner {
 public:
  DeskProcesses(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults) {}

  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

 private:
  DeskHardware& hardware;
  Faults& faults;
};

/// The applications that the desk file says are running. The own process is a real one.
class DeskApplications : public Applications {
 public:
  DeskApplications(const DeskDescription& deskDescription, Faults& machineFaults)
      : desk(deskDescription), faults(machineFaults) {}

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override;
  bool announce() override;

 private:
  const DeskDescription& desk;
  Faults& faults;
  bool isAnnounced = false;
};

}  // namespace brivane
