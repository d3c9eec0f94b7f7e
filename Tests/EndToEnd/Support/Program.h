#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace brivane {

/// The result of a built program's run.
struct ProgramResult {
  int exitStatus = -1;
  std::string output;
  std::string errors;
};

/// A program's restrictions and its terminal.
struct ProgramLimits {
  /// Larger files can't be written, as on a full disk; 0: no limit.
  std::uint64_t largestFileBytes = 0;
  /// Standard error is a terminal.
  bool hasTerminal = false;
};

/// The folder of the built programs, this test among them.
std::filesystem::path programFolder();

/// Where the tests are run from: the top of the tree, or of the copy of what tests need of it.
std::filesystem::path treeFolder();

/// A running program. The destructor kills a program that was not waited for, because a test has
/// failed.
class RunningProgram {
 public:
  /// Starts the built program `name` with this environment on top of the test's own; an empty value
  /// takes a variable away.
  RunningProgram(const std::string& name, const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment, ProgramLimits limits = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  ProgramResult wait();

  /// Waits until the text was written to standard error; false when the program ends without it, or
  /// writes nothing for a minute.
  bool waitForError(const std::string& text);
  /// The same for standard output, behind what an earlier call has found.
  bool waitForOutput(const std::string& text);

  /// Sends the signal; not after `wait()`.
  void signal(int number) const;
  bool hasEnded() const;
  pid_t processID() const { return child; }

 private:
  pid_t child = -1;
  int output = -1;
  int errors = -1;
  /// What `waitForError` and `waitForOutput` have read already.
  std::string earlyErrors;
  std::string earlyOutput;
  std::size_t foundOutput = 0;
};

ProgramResult runProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         ProgramLimits limits = {});

std::vector<std::string> linesOf(const std::string& text);

}  // namespace brivane
