#include "Machines/Desk/Processes.h"

#include <unistd.h>

#include "Machines/Desk/HIDUtil.h"

namespace brivane {

ProcessResult DeskProcesses::run(const std::string& executable,
                                 const std::vector<std::string>& arguments) {
  if (faults.strikes("ProcessRunner.run")) {
    return ProcessNotStarted{"Resource temporarily unavailable"};
  }
  const auto presence = hardware.description().hidUtil;
  if (executable != "/usr/bin/hidutil" || presence == HIDUtilPresence::missing) {
    return ProcessNotStarted{"No such file or directory"};
  }
  if (presence == HIDUtilPresence::refusing) return FinishedProcess{1, ""};
  return runHIDUtil(arguments, hardware);
}

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
  if (isAnnounced && bundleIdentifier == desk.bundleIdentifier) running.push_back(ownProcessID());
  return running;
}

ProcessID DeskApplications::ownProcessID() {
  return ::getpid();
}

bool DeskApplications::announce() {
  return isAnnounced = true;
}

}  // namespace brivane
