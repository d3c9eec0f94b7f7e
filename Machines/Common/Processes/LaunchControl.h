#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"

namespace brivane {

/// The program's launch agent, or the machine's counterpart.
struct LaunchAgent {
  /// The user's launch domain, "gui/" and the user's number.
  std::string domain;
  std::string file;
  bool isInstalled = false;
  /// Nothing before the first enabling or disabling.
  std::optional<bool> isEnabled;
  /// Returns whether it could be stored.
  std::function<bool(bool enabled)> setEnabled;
};

/// The system's tool for launch agents with these arguments, as far as Brivane uses it: "enable"
/// and "disable" with a service, "bootstrap" with a domain and the agent's file, "print-disabled"
/// with a domain. Anything else ends with status 64; loading a missing or disabled agent, and a
/// failure to store, with 5.
FinishedProcess runLaunchControl(const std::vector<std::string>& arguments,
                                 const LaunchAgent& agent);

}  // namespace brivane
