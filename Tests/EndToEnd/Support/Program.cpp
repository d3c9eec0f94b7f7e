#include "Tests/EndToEnd/Support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <utility>

namespace brivane {
namespace {

void setEnvironment(const std::map<std::string, std::string>& environment) {
  for (const auto& [variable, value] : environment) {
    if (value.empty()) {
      unsetenv(variable.c_str());
    } else {
      setenv(variable.c_str(), value.c_str(), 1);
    }
  }
}

void limit(ProgramLimits limits) {
  if (limits.largestFileBytes == 0) return;
  signal(SIGXFSZ, SIG_IGN);
  const rlimit largest{limits.largestFileBytes, limits.largestFileBytes};
  setrlimit(RLIMIT_FSIZE, &largest);
}

/// A pipe or a terminal: the test's end first, then the program's.
bool openErrors(std::array<int, 2>& ends, bool isTerminal) {
  if (!isTerminal) return pipe2(ends.data(), O_CLOEXEC) == 0;
  ends[0] = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (ends[0] < 0 || grantpt(ends[0]) != 0 || unlockpt(ends[0]) != 0) return false;
  ends[1] = open(ptsname(ends[0]), O_RDWR | O_NOCTTY | O_CLOEXEC);
  return ends[1] >= 0;
}

/// Reads both at the same time to their ends, so that neither fills up and blocks the writer.
void readBoth(int first, std::string& firstText, int second, std::string& secondText) {
  std::array<pollfd, 2> open = {{{first, POLLIN, 0}, {second, POLLIN, 0}}};
  const std::array<std::string*, 2> texts = {&firstText, &secondText};
  while (open[0].fd >= 0 || open[1].fd >= 0) {
    poll(open.data(), open.size(), -1);
    for (std::size_t i = 0; i < open.size(); ++i) {
      if (open[i].fd < 0 || open[i].revents == 0) continue;
      std::array<char, 4096> buffer{};
      const ssize_t count = read(open[i].fd, buffer.data(), buffer.size());
      if (count > 0) {
        texts[i]->append(buffer.data(), static_cast<std::size_t>(count));
      } else {
        close(open[i].fd);
        open[i].fd = -1;
      }
    }
  }
}

/// Waits for more text; false at the end, or without any for a minute.
bool readSome(int descriptor, std::string& text) {
  constexpr int patienceMilliseconds = 60'000;
  pollfd open{descriptor, POLLIN, 0};
  if (poll(&open, 1, patienceMilliseconds) != 1) return false;
  std::array<char, 4096> buffer{};
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count <= 0) return false;
  text.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

}  // namespace

std::filesystem::path programFolder() {
  return std::filesystem::canonical("/proc/self/exe").parent_path();
}

std::filesystem::path treeFolder() {
  return std::filesystem::current_path();
}

RunningProgram::RunningProgram(const std::string& name, const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment,
                               ProgramLimits limits) {
  const std::string program = programFolder() / name;
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  std::array<int, 2> outputPipe{};
  std::array<int, 2> errorPipe{};
  if (pipe2(outputPipe.data(), O_CLOEXEC) != 0) return;
  if (!openErrors(errorPipe, limits.hasTerminal)) return;
  child = fork();
  if (child == 0) {
    setEnvironment(environment);
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(outputPipe[1], STDOUT_FILENO);
    dup2(errorPipe[1], STDERR_FILENO);
    limit(limits);
    execv(program.c_str(), pointers.data());
    _exit(127);
  }
  close(outputPipe[1]);
  close(errorPipe[1]);
  output = outputPipe[0];
  errors = errorPipe[0];
}

RunningProgram::~RunningProgram() {
  if (child <= 0) return;
  signal(SIGKILL);
  wait();
}

ProgramResult RunningProgram::wait() {
  ProgramResult result;
  result.errors = std::move(earlyErrors);
  result.output = std::move(earlyOutput);
  readBoth(output, result.output, errors, result.errors);
  int status = 0;
  waitpid(child, &status, 0);
  child = -1;
  result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

bool RunningProgram::waitForError(const std::string& text) {
  while (earlyErrors.find(text) == std::string::npos) {
    if (!readSome(errors, earlyErrors)) return false;
  }
  return true;
}

bool RunningProgram::waitForOutput(const std::string& text) {
  auto place = earlyOutput.find(text, foundOutput);
  while (place == std::string::npos) {
    if (!readSome(output, earlyOutput)) return false;
    place = earlyOutput.find(text, foundOutput);
  }
  foundOutput = place + text.size();
  return true;
}

void RunningProgram::signal(int number) const {
  if (child > 0) kill(child, number);
}

bool RunningProgram::hasEnded() const {
  siginfo_t information{};
  const int options = WEXITED | WNOHANG | WNOWAIT;
  return waitid(P_PID, static_cast<id_t>(child), &information, options) != 0 ||
         information.si_pid != 0;
}

ProgramResult runProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         ProgramLimits limits) {
  return RunningProgram(name, arguments, environment, limits).wait();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace brivane
