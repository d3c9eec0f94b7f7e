#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Seams/Session.h"
#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// Launch at login: enables or disables, with the system's tool, the launch agent that an installer
/// put into the user's home folder. Main thread; each call blocks until the tool has ended.
class LoginItem {
 public:
  struct Outcome {
    /// The tool's exit status; `notStarted` when it could not be started.
    std::int32_t status = 0;
    /// The tool's output; empty when not valid UTF-8.
    std::string output;

    bool operator==(const Outcome&) const = default;
  };

  static constexpr std::int32_t notStarted = -1;

  explicit LoginItem(ResidentMachine& machine);

  /// An installed agent is enabled unless the tool says that it isn't.
  bool isEnabled();

  /// Enabling also loads the agent now; disabling leaves the running program alone.
  void setEnabled(bool enabled);

  /// Runs the tool; `arguments` is not empty.
  Outcome launchctl(const std::vector<std::string>& arguments);

 private:
  std::string agentPath();
  std::string domain();

  ProcessRunner& processes;
  Session& session;
  SystemLog& log;
};

}  // namespace brivane
