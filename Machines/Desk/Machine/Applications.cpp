#include "Machines/Desk/Machine/Applications.h"

namespace brivane {

std::optional<std::string> DeskApplications::bundleIdentifier() {
  if (faults.strikes("Applications.bundleIdentifier")) return std::nullopt;
  return hardware.description().bundleIdentifier;
}

std::vector<ProcessID> DeskApplications::runningApplications(const std::string& bundleIdentifier) {
  if (faults.strikes("Applications.runningApplications")) return {};
  std::vector<ProcessID> running;
  for (const auto& application : hardware.description().applications) {
    if (application.bundleIdentifier == bundleIdentifier) running.push_back(application.processID);
  }
  if (bundleIdentifier != hardware.description().bundleIdentifier) return running;
  for (const auto program : hardware.announcedPrograms()) running.push_back(program);
  return running;
}

bool DeskApplications::announce() {
  if (faults.strikes("Applications.announce")) return false;
  return hardware.announceProgram(ownID);
}

void DeskApplications::end() {
  hardware.endProgram(ownID);
}

}  // namespace brivane
