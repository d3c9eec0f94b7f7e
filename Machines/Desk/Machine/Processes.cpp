#include "Machines/Desk/Machine/Processes.h"

#include "Machines/Common/Processes/LaunchControl.h"
#include "Machines/Desk/Machine/HIDUtil.h"
#include "Machines/Desk/Machine/Session.h"

namespace brivane {
namespace {

constexpr Microseconds slowRun = std::chrono::seconds(2);

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
  const ToolsState tools = hardware.system.tools();
  if (executable == "/usr/bin/hidutil") return runPresent(tools.hidUtil, runHIDUtil, arguments);
  if (executable == "/bin/launchctl") {
    return runPresent(tools.launchControl, runLaunchAgent, arguments);
  }
  return ProcessNotStarted{"No such file or directory"};
}

ProcessResult DeskProcesses::runPresent(ToolPresence presence, DeskTool tool,
                                        const std::vector<std::string>& arguments) {
  switch (presence) {
    case ToolPresence::present:
      return tool(arguments, hardware);
    case ToolPresence::refusing:
      return FinishedProcess{1, ""};
    case ToolPresence::garbled:
      return FinishedProcess{tool(arguments, hardware).exitStatus, "\xFF{ } }{\n"};
    case ToolPresence::slow:
      runtime.sleep(slowRun);
      return tool(arguments, hardware);
    case ToolPresence::missing:
      break;
  }
  return ProcessNotStarted{"No such file or directory"};
}

}  // namespace brivane
