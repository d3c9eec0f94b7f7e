#include "Machines/Desk/Machine/Processes.h"

#include "Machines/Common/Processes/LaunchControl.h"
#include "Machines/Desk/Machine/HIDUtil.h"
#include "Machines/Desk/Machine/Session.h"

namespace brivane {
namespace {

using Tool = FinishedProcess (*)(const std::vector<std::string>& arguments, DeskHardware& hardware);

ProcessResult runPresent(ToolPresence presence, Tool tool,
                         const std::vector<std::string>& arguments, DeskHardware& hardware) {
  switch (presence) {
    case ToolPresence::present:
      return tool(arguments, hardware);
    case ToolPresence::refusing:
      return FinishedProcess{1, ""};
    case ToolPresence::missing:
      break;
  }
  return ProcessNotStarted{"No such file or directory"};
}

FinishedProcess runLaunchAgent(const std::vector<std::string>& arguments, DeskHardware& hardware) {
  const auto setEnabled = [&hardware](bool isEnabled) {
    hardware.system.setLaunchAgentEnabled(isEnabled);
    return true;
  };
  return runLaunchControl(arguments,
                          {"gui/" + std::to_string(DeskSession::user), DeskSession::agentFile,
                           hardware.description.launchAgent.isInstalled,
                           hardware.system.launchState().isEnabled, setEnabled});
}

std::string tracedRun(const std::string& executable, const std::vector<std::string>& arguments,
                      const ProcessResult& result) {
  std::string line = "run " + executable;
  for (const auto& argument : arguments) line += " " + argument;
  const auto* const finished = std::get_if<FinishedProcess>(&result);
  return line + (finished == nullptr ? ", not started"
                                     : ", status " + std::to_string(finished->exitStatus));
}

}  // namespace

ProcessResult DeskProcesses::run(const std::string& executable,
                                 const std::vector<std::string>& arguments) {
  if (faults.strikes("ProcessRunner.run")) {
    return ProcessNotStarted{"Resource temporarily unavailable"};
  }
  auto result = runTool(executable, arguments);
  hardware.tracer->note([&] { return tracedRun(executable, arguments, result); });
  return result;
}

ProcessResult DeskProcesses::runTool(const std::string& executable,
                                     const std::vector<std::string>& arguments) {
  const auto& desk = hardware.description;
  if (executable == "/usr/bin/hidutil") {
    return runPresent(desk.hidUtil, runHIDUtil, arguments, hardware);
  }
  if (executable == "/bin/launchctl") {
    return runPresent(desk.launchControl, runLaunchAgent, arguments, hardware);
  }
  return ProcessNotStarted{"No such file or directory"};
}

}  // namespace brivane
