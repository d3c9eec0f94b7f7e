#include "Machines/Desk/Machine/LaunchControl.h"

#include "Machines/Common/Processes/LaunchControl.h"
#include "Machines/Desk/Machine/Session.h"

namespace brivane {

FinishedProcess runLaunchControl(const std::vector<std::string>& arguments,
                                 DeskHardware& hardware) {
  const auto setEnabled = [&hardware](bool isEnabled) {
    hardware.system.setLaunchAgentEnabled(isEnabled);
    return true;
  };
  return runLaunchControl(
      arguments, LaunchAgent{"gui/" + std::to_string(DeskSession::user), DeskSession::agentFile,
                             hardware.description.launchAgent.isInstalled,
                             hardware.system.launchState().isEnabled, setEnabled});
}

}  // namespace brivane
