#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

namespace brivane {

/// The resident program, started by `brivane-ctl` to go on without it: in a session of its own,
/// without a terminal.
class ProgramStart {
 public:
  /// Starts the program that lies in the same folder as this one.
  ProgramStart();

  /// In one sentence why it doesn't run: it couldn't be started, or has failed. Nothing while it
  /// runs, or left the work to a Brivane that was started before.
  std::optional<std::string> problem() const;

 private:
  const std::filesystem::path program;
  pid_t child = -1;
};

}  // namespace brivane
