// Not every system can make a pipe that children don't inherit in one step; children are started by
// the main thread alone, so there is none in between.
#include "Machines/Common/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

/// Some systems' headers leave it to the program to declare it.
extern "C" char** environ;  // NOLINT(readability-redundant-declaration)

namespace brivane {
namespace {

constexpr int signalStatusBase = 128;

/// What a child starts with: nothing on standard input and error, the pipe on standard output,
/// default signals.
class SpawnSettings {
 public:
  explicit SpawnSettings(int outputEnd) {
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, outputEnd, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

/// The child's process identifier; or the reason why there is none.
std::variant<pid_t, ProcessNotStarted> start(const std::string& executable,
                                             const std::vector<std::string>& arguments,
                                             int outputEnd) {
  std::vector<std::string> words{executable};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const SpawnSettings settings(outputEnd);
  pid_t child = 0;
  const int error = posix_spawn(&child, executable.c_str(), &settings.files, &settings.attributes,
                                pointers.data(), environ);
  if (error != 0) return ProcessNotStarted{std::generic_category().message(error)};
  return child;
}

std::string readToEnd(int descriptor) {
  std::string output;
  std::array<char, 4096> buffer{};
  while (true) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return output;
    output.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

int waitForExit(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : signalStatusBase + WTERMSIG(status);
}

}  // namespace

ProcessResult runChildProcess(const std::string& executable,
                              const std::vector<std::string>& arguments) {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) {
    return ProcessNotStarted{std::generic_category().message(errno)};
  }
  for (const int end : pipe) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  const auto started = start(executable, arguments, pipe[1]);
  ::close(pipe[1]);
  FinishedProcess finished;
  if (const auto* child = std::get_if<pid_t>(&started)) {
    finished.output = readToEnd(pipe[0]);
    finished.exitStatus = waitForExit(*child);
  }
  ::close(pipe[0]);
  if (const auto* failure = std::get_if<ProcessNotStarted>(&started)) return *failure;
  return finished;
}

}  // namespace brivane
