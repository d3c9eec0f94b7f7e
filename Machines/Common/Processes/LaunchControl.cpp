#include "Machines/Common/Processes/LaunchControl.h"

namespace brivane {
namespace {

constexpr auto label = "com.quorrel.brivane";
const FinishedProcess usageError = {64, ""};
const FinishedProcess inputOutputError = {5, ""};

/// The list lacks a service that was never enabled nor disabled.
std::string disabledServices(const LaunchAgent& agent) {
  std::string text = "disabled services = {\n";
  if (agent.isEnabled) {
    text += "\t\"" + std::string(label) + "\" => " + (*agent.isEnabled ? "enabled" : "disabled");
    text += "\n";
  }
  return text + "}\n";
}

FinishedProcess switchService(const std::string& service, bool isEnabled,
                              const LaunchAgent& agent) {
  if (service != agent.domain + "/" + label) return usageError;
  return agent.setEnabled(isEnabled) ? FinishedProcess{0, ""} : inputOutputError;
}

FinishedProcess bootstrap(const std::string& file, const LaunchAgent& agent) {
  const bool canBeLoaded =
      file == agent.file && agent.isInstalled && agent.isEnabled.value_or(true);
  return canBeLoaded ? FinishedProcess{0, ""} : inputOutputError;
}

}  // namespace

FinishedProcess runLaunchControl(const std::vector<std::string>& arguments,
                                 const LaunchAgent& agent) {
  if (arguments.size() == 2 && (arguments[0] == "enable" || arguments[0] == "disable")) {
    return switchService(arguments[1], arguments[0] == "enable", agent);
  }
  if (arguments.size() < 2 || arguments[1] != agent.domain) return usageError;
  if (arguments.size() == 2 && arguments[0] == "print-disabled") {
    return {0, disabledServices(agent)};
  }
  if (arguments.size() == 3 && arguments[0] == "bootstrap") return bootstrap(arguments[2], agent);
  return usageError;
}

}  // namespace brivane
