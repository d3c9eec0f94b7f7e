#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/Session.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The user's session on the desk: user 501 at "/Users/desk". The only files are the program and,
/// when installed, the launch agent.
class DeskSession : public Session {
 public:
  static constexpr std::uint32_t user = 501;
  static constexpr auto home = "/Users/desk";
  static constexpr auto agentFile = "/Users/desk/Library/LaunchAgents/com.quorrel.brivane.plist";

  DeskSession(const DeskDescription& deskDescription, Faults& machineFaults,
              const Tracer& hardwareTracer)
      : desk(deskDescription), faults(machineFaults), tracer(hardwareTracer) {}

  std::uint32_t userID() override;
  std::string homeFolder() override;
  bool fileExists(const std::string& path) override;
  std::optional<double> modificationSeconds(const std::string& path) override;
  std::optional<std::string> executablePath() override;
  std::vector<std::string> arguments() override;
  void openURL(const std::string& url) override;

  /// All URLs opened so far.
  const std::vector<std::string>& openedURLs() const { return opened; }

 private:
  bool isProgram(const std::string& path) const;

  const DeskDescription& desk;
  Faults& faults;
  const Tracer& tracer;
  std::vector<std::string> opened;
};

}  // namespace brivane
