#include "Machines/Desk/Machine/Session.h"

namespace brivane {

std::uint32_t DeskSession::userID() {
  return user;
}

std::string DeskSession::homeFolder() {
  return home;
}

bool DeskSession::fileExists(const std::string& path) {
  if (faults.strikes("Session.fileExists")) return false;
  const bool isAgent = path == agentFile && desk.launchAgent.isInstalled;
  return isAgent || isProgram(path);
}

std::optional<double> DeskSession::modificationSeconds(const std::string& path) {
  if (faults.strikes("Session.modificationSeconds") || !isProgram(path)) return std::nullopt;
  return desk.program.modificationSeconds;
}

std::optional<std::string> DeskSession::executablePath() {
  if (faults.strikes("Session.executablePath")) return std::nullopt;
  return desk.program.executablePath;
}

std::vector<std::string> DeskSession::arguments() {
  if (faults.strikes("Session.arguments")) return {};
  const auto& program = desk.program;
  if (program.arguments) return *program.arguments;
  return {program.executablePath.value_or("Brivane")};
}

void DeskSession::openURL(const std::string& url) {
  if (faults.strikes("Session.openURL")) return;
  opened.push_back(url);
  tracer.note([&] { return "open " + url; });
}

bool DeskSession::isProgram(const std::string& path) const {
  return path == desk.program.executablePath;
}

}  // namespace brivane
