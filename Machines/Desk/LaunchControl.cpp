#include "Machines/Desk/LaunchControl.h"

#include "Machines/Desk/Session.h"

namespace brivane {
namespace {

constexpr auto domain = "gui/501";
constexpr auto label = "com.quorrel.brivane";
const FinishedProcess usageError = {64, ""};
const FinishedProcess inputOutputError = {5, ""};

/// A service that was never enabled nor disabled is not in the list.
std::string disabledServices(const LaunchState& state) {
  std::string text = "disabled services = {\n";
  if (state.isEnabled) {
    text += "\t\"" + std::string(label) + "\" => " + (*state.isEnabled ? "enabled" : "disabled");
    text += "\n";
  }
  return text + "}\n";
}

FinishedProcess switchService(const std::string& service, bool isEnabled, DeskHardware& hardware) {
  if (service != std::string(domain) + "/" + label) return usageError;
  hardware.setLaunchAgentEnabled(isEnabled);
  return {0, ""};
}

FinishedProcess bootstrap(const std::string& file, DeskHardware& hardware) {
  const bool canBeLoaded = file == DeskSession::agentFile &&
                           hardware.description().launchAgent.isInstalled &&
                           hardware.launchState().isEnabled.value_or(true);
  return canBeLoaded ? FinishedProcess{0, ""} : inputOutputError;
}

}  // namespace

FinishedProcess runLaunchControl(const std::vector<std::string>& arguments,
                                 DeskHardware& hardware) {
  if (arguments.size() == 2 && (arguments[0] == "enable" || arguments[0] == "disable")) {
    return switchService(arguments[1], arguments[0] == "enable", hardware);
  }
  if (arguments.size() < 2 || arguments[1] != domain) return usageError;
  if (arguments.size() == 2 && arguments[0] == "print-disabled") {
    return {0, disabledServices(hardware.launchState())};
  }
  if (arguments.size() == 3 && arguments[0] == "bootstrap")
    return bootstrap(arguments[2], hardware);
  return usageError;
}

}  // namespace brivane
