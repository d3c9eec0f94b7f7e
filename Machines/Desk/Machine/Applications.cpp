#include "Machines/Desk/Machine/Applications.h"

namespace brivane {

std::optional<std::string> DeskApplications::bundleIdentifier() {
  if (faults.strikes("Applications.bundleIdentifier")) return std::nullopt;
  return desk.bundleIdentifier;
}

std::vector<ProcessID> DeskApplications::runningApplications(const std::string& bundleIdentifier) {
  if (faults.strikes("Applications.runningApplications")) return {};
  std::vector<ProcessID> running;
  for (const auto& application : desk.applications) {
    if (application.bundleIdentifier == bundleIdentifier) running.push_back(application.processID);
  }
  if (bundleIdentifier != desk.bundleIdentifier) return running;
  for (const auto program : programs.announced()) running.push_back(program);
  return running;
}

bool DeskApplications::announce() {
  if (faults.strikes("Applications.announce")) return false;
  return programs.announce(ownID);
}

void DeskApplications::end() {
  programs.end(ownID);
}

}  // namespace brivane
