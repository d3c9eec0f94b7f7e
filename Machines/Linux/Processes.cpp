#include "Machines/Linux/Processes.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "Machines/Common/ChildProcess.h"
#include "Machines/Linux/HIDUtil/HIDUtil.h"

namespace brivane {
namespace {

struct StandIn {
  std::string_view tool;
  std::string_view program;
};

constexpr std::array<StandIn, 1> standIns = {{{"/usr/bin/hidutil", "brivane-hidutil"}}};

bool isSetting(const std::vector<std::string>& arguments) {
  return std::find(arguments.begin(), arguments.end(), "--set") != arguments.end();
}

}  // namespace

LinuxProcessRunner::LinuxProcessRunner(Findings& itsFindings,
                                       std::optional<std::filesystem::path> programFolder)
    : findings(itsFindings), folder(std::move(programFolder)) {}

ProcessResult LinuxProcessRunner::run(const std::string& executable,
                                      const std::vector<std::string>& arguments) {
  const auto* found = std::find_if(standIns.begin(), standIns.end(), [&](const StandIn& standIn) {
    return standIn.tool == executable;
  });
  if (found == standIns.end()) return runChildProcess(executable, arguments);
  auto result = runChildProcess(standInFolder() / found->program, arguments);
  const auto* finished = std::get_if<FinishedProcess>(&result);
  if (finished != nullptr && isSetting(arguments)) {
    findings.keymapsDenied = finished->exitStatus == HIDUtil::notPermitted;
  }
  return result;
}

std::filesystem::path LinuxProcessRunner::standInFolder() const {
  if (folder) return *folder;
  std::error_code unreadable;  // then the stand-in is not found, and its start says so
  return std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path();
}

}  // namespace brivane
