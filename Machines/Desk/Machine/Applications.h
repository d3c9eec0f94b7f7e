#pragma once

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/Hardware/RunningPrograms.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk file's running applications, and the programs on this desk that announced themselves.
class DeskApplications : public Applications {
 public:
  DeskApplications(const DeskDescription& deskDescription, RunningPrograms& runningPrograms,
                   Faults& machineFaults)
      : desk(deskDescription),
        programs(runningPrograms),
        faults(machineFaults),
        ownID(runningPrograms.nextID()) {}
  ~DeskApplications() override { end(); }

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override { return ownID; }
  bool announce() override;

  /// Removes this program from the running ones.
  void end();

 private:
  const DeskDescription& desk;
  RunningPrograms& programs;
  Faults& faults;
  const ProcessID ownID;
};

}  // namespace brivane
