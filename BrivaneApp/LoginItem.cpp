// The tool lists agents that are or once were disabled; an agent that isn't listed is enabled.
// Older systems print `"label" => true`, newer ones `"label" => disabled`.

#include "BrivaneApp/LoginItem.h"

#include <sstream>
#include <string_view>
#include <variant>

#include "BrivaneCore/Support/UTF8.h"

namespace brivane {
namespace {

constexpr std::string_view agentLabel = "com.quorrel.brivane";
constexpr std::string_view agentFile = "Library/LaunchAgents/com.quorrel.brivane.plist";
constexpr auto tool = "/bin/launchctl";

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

LoginItem::LoginItem(ResidentMachine& machine)
    : processes(machine.processes()), session(machine.session()), log(machine.log()) {}

bool LoginItem::isEnabled() {
  if (!session.fileExists(agentPath())) return false;
  std::istringstream printed(launchctl({"print-disabled", domain()}).output);
  for (std::string line; std::getline(printed, line);) {
    if (contains(line, agentLabel)) return !contains(line, "true") && !contains(line, "disabled");
  }
  return true;
}

void LoginItem::setEnabled(bool enabled) {
  if (!session.fileExists(agentPath())) {
    log.write("Brivane: no LaunchAgent installed; run ./install.sh to enable launch at login.");
    return;
  }
  launchctl({enabled ? "enable" : "disable", domain() + "/" + std::string(agentLabel)});
  if (enabled) launchctl({"bootstrap", domain(), agentPath()});
}

LoginItem::Outcome LoginItem::launchctl(const std::vector<std::string>& arguments) {
  const auto result = processes.run(tool, arguments);
  if (const auto* failure = std::get_if<ProcessNotStarted>(&result)) {
    log.write("Brivane: launchctl " + arguments.front() + " failed: " + failure->reason);
    return {notStarted, ""};
  }
  const auto& finished = std::get<FinishedProcess>(result);
  return {finished.exitStatus, isValidUTF8(finished.output) ? finished.output : std::string()};
}

std::string LoginItem::agentPath() {
  return session.homeFolder() + "/" + std::string(agentFile);
}

std::string LoginItem::domain() {
  return "gui/" + std::to_string(session.userID());
}

}  // namespace brivane
