#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Machines/Common/Processes/LaunchControl.h"

namespace brivane {

/// The program's XDG autostart entry, "com.quorrel.brivane.desktop": the counterpart of the Mac's
/// launch agent. Installed in the user's folder or the system's; disabled by the key "Hidden" in
/// the user's, the only one written here.
class AutostartEntry {
 public:
  /// The autostart folders, the user's own first.
  explicit AutostartEntry(std::vector<std::filesystem::path> autostartFolders);

  /// The folders named by the environment.
  static std::vector<std::filesystem::path> usualFolders();

  bool isInstalled() const;
  /// Nothing when the entry has no key "Hidden".
  std::optional<bool> isEnabled() const;
  /// Returns whether it could be stored.
  bool setEnabled(bool enabled) const;

  /// The entry as a launch agent.
  LaunchAgent asLaunchAgent() const;

 private:
  std::optional<std::string> read() const;

  const std::vector<std::filesystem::path> folders;
};

/// The launch agent's path on a Mac.
std::filesystem::path launchAgentFile();

}  // namespace brivane
