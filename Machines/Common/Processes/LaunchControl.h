#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"

namespace brivane {

/// The program's launch agent, whatever a machine has in its place.
struct LaunchAgent {
  /// The user's launch domain, "gui/" and the user's number.
  std::string domain;
  std::string file;
  bool isInstalled = false;
  /// Nothing when it was never enabled nor disabled.
  std::optional<bool> isEnabled;
  /// Whether that could be stored.
  std::function<bool(bool enabled)> setEnabled;
};

/// The system's tool for launch agents with these arguments, as far as Brivane uses it: "enable"
/// and "disable" with a service, "bootstrap" with a domain and the agent's file, "print-disabled"
/// with a domain. Anything else ends with status 64, loading what is not there or disabled, and
/// storing what can't be stored, with 5.
FinishedProcess runLaunchControl(const std::vector<std::string>& arguments,
                                 const LaunchAgent& agent);

}  // namespace brivane
