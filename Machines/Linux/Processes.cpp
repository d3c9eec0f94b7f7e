#include "Machines/Linux/Processes.h"

#include <algorithm>
#include <utility>

#include "Machines/Common/Processes/ChildProcess.h"
#include "Machines/Linux/HIDUtil/HIDUtil.h"

namespace brivane {
namespace {

bool isSetting(const std::vector<std::string>& arguments) {
  return std::find(arguments.begin(), arguments.end(), "--set") != arguments.end();
}

}  // namespace

LinuxProcessRunner::LinuxProcessRunner(MissingAccess& machineMissingAccess,
                                       const AutostartEntry& programsEntry,
                                       std::optional<std::filesystem::path> programFolder)
    : missingAccess(machineMissingAccess), entry(programsEntry), folder(std::move(programFolder)) {}

ProcessResult LinuxProcessRunner::run(const std::string& executable,
                                      const std::vector<std::string>& arguments) {
  if (executable == "/usr/bin/hidutil") return runKeyMapping(arguments);
  if (executable == "/bin/launchctl") return runLaunchControl(arguments, entry.asLaunchAgent());
  return runChildProcess(executable, arguments);
}

ProcessResult LinuxProcessRunner::runKeyMapping(const std::vector<std::string>& arguments) {
  auto result = runChildProcess(standInFolder() / "brivane-hidutil", arguments);
  const auto* finished = std::get_if<FinishedProcess>(&result);
  if (finished != nullptr && isSetting(arguments)) {
    missingAccess.keymapsDenied = finished->exitStatus == HIDUtil::notPermitted;
  }
  return result;
}

std::filesystem::path LinuxProcessRunner::standInFolder() const {
  if (folder) return *folder;
  std::error_code unreadable;  // starting the stand-in fails then
  return std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path();
}

}  // namespace brivane
