// Not every system has pipe2 with O_CLOEXEC; as only the main thread starts children, none can
// start between pipe and fcntl. Two inherited states must not matter: closed standard descriptors,
// whose numbers the pipe's ends would get, and an ignored SIGCHLD, which discards children's
// statuses.
#include "Machines/Common/Processes/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "Machines/Common/Files/FileDescriptor.h"

/// Some systems' headers don't declare it.
extern "C" char** environ;  // NOLINT(readability-redundant-declaration)

namespace brivane {
namespace {

constexpr int signalStatusBase = 128;

/// A child's start: /dev/null as standard input and error, the pipe as standard output, default
/// signals.
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

/// The child's process ID, or why it could not be started.
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

/// A close-on-exec copy with a number above the standard descriptors; not open when there are too
/// many.
FileDescriptor aboveStandardOnes(const FileDescriptor& end) {
  return FileDescriptor(::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// The read end and the write end; not open on failure.
std::pair<FileDescriptor, FileDescriptor> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return std::pair<FileDescriptor, FileDescriptor>();
  const FileDescriptor readEnd(ends[0]);
  const FileDescriptor writeEnd(ends[1]);
  return {aboveStandardOnes(readEnd), aboveStandardOnes(writeEnd)};
}

/// With SIGCHLD ignored, a child's exit status is lost.
void keepStatusesOfChildren() {
  struct sigaction action {};
  ::sigaction(SIGCHLD, nullptr, &action);
  if (action.sa_handler == SIG_IGN) std::signal(SIGCHLD, SIG_DFL);
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
  auto [readEnd, writeEnd] = makePipe();
  if (!readEnd.isOpen() || !writeEnd.isOpen()) {
    return ProcessNotStarted{std::generic_category().message(errno)};
  }
  keepStatusesOfChildren();
  const auto started = start(executable, arguments, writeEnd.get());
  if (const auto* failure = std::get_if<ProcessNotStarted>(&started)) return *failure;
  writeEnd = FileDescriptor();
  FinishedProcess finished;
  finished.output = readToEnd(readEnd.get());
  finished.exitStatus = waitForExit(std::get<pid_t>(started));
  return finished;
}

}  // namespace brivane
