#pragma once

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk file's running applications, and the programs on this desk that announced themselves.
class DeskApplications : public Applications {
 public:
  DeskApplications(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults), ownID(deskHardware.nextProcessID()) {}
  ~DeskApplications() override { end(); }

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override { return ownID; }
  bool announce() override;

  /// Removes this program from the running ones.
  void end();

 private:
  DeskHardware& hardware;
  Faults& faults;
  const ProcessID ownID;
};

}  // namespace brivane
