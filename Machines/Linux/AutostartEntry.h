#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Machines/Common/Processes/LaunchControl.h"

namespace brivane {

/// The program's entry among those that a desktop starts at login, "com.quorrel.brivane.desktop":
/// what a launch agent is on the Mac. Whoever installs the program puts it into the user's own
/// folder or the system's; it is disabled by the key "Hidden" in the user's own, which is the only
/// one that is written.
class AutostartEntry {
 public:
  /// The folders that desktops look into, the user's own first.
  explicit AutostartEntry(std::vector<std::filesystem::path> autostartFolders);

  /// As the environment names them.
  static std::vector<std::filesystem::path> usualFolders();

  bool isInstalled() const;
  /// Nothing when the entry doesn't say.
  std::optional<bool> isEnabled() const;
  /// Whether that could be stored.
  bool setEnabled(bool enabled) const;

  /// The entry as a launch agent.
  LaunchAgent asLaunchAgent() const;

 private:
  std::optional<std::string> read() const;

  const std::vector<std::filesystem::path> folders;
};

/// Where the launch agent would lie on a Mac.
std::filesystem::path launchAgentFile();

}  // namespace brivane
