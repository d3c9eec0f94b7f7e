#pragma once

#include <string>
#include <variant>
#include <vector>

namespace brivane {

/// A child process that ran to its end.
struct FinishedProcess {
  /// The exit status; 128 plus the signal's number when a signal ended it.
  int exitStatus = 0;
  /// Everything it wrote to standard output, as bytes.
  std::string output;

  bool operator==(const FinishedProcess&) const = default;
};

/// A child process that could not be started, and why, in words for a person.
struct ProcessNotStarted {
  std::string reason;

  bool operator==(const ProcessNotStarted&) const = default;
};

using ProcessResult = std::variant<FinishedProcess, ProcessNotStarted>;

/// Runs the system's own tools. Main thread.
class ProcessRunner {
 public:
  virtual ~ProcessRunner() = default;

  /// Runs the program at the absolute path `executable` with `arguments` (its own name not among
  /// them), standard input and standard error connected to nothing, and blocks until it has closed
  /// its output and ended.
  virtual ProcessResult run(const std::string& executable,
                            const std::vector<std::string>& arguments) = 0;
};

}  // namespace brivane
