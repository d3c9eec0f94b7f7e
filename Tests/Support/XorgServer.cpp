// Starts /usr/lib/xorg/Xorg itself: the wrapper of that name in the path refuses users without a
// console. The server finds a free display number and reports it when it is ready, so that tests
// may run side by side without guessing or waiting.

#include "Tests/Support/XorgServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <vector>

namespace brivane {
namespace {

constexpr auto executable = "/usr/lib/xorg/Xorg";
/// Seen from the top of the tree, where every test program is started.
constexpr auto configuration = "Tests/Support/X11/xorg.conf";
constexpr int startPatienceMilliseconds = 60'000;
constexpr std::size_t logEndBytes = 2000;

std::filesystem::path makeFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "brivane-x11-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return pattern;
}

/// The file becomes this process's output.
void sendOutputTo(const std::string& file) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(descriptor, STDOUT_FILENO);
  ::dup2(descriptor, STDERR_FILENO);
}

}  // namespace

XorgServer::XorgServer() : folder(makeFolder()) {
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  start(pipe[1]);
  ::close(pipe[1]);
  const std::string number = readDisplayNumber(pipe[0]);
  ::close(pipe[0]);
  name = ":" + number;
  if (!number.empty()) return;
  const std::string reason = "the X server did not start:\n" + logEnd();
  kill();
  std::filesystem::remove_all(folder);
  throw std::runtime_error(reason);
}

XorgServer::~XorgServer() {
  kill();
  std::filesystem::remove_all(folder);
}

void XorgServer::kill() {
  if (process < 0) return;
  // To clients it looks like a crash, but the server removes its lock and socket. The server may
  // overlook a signal that comes while it loses a client.
  constexpr int pausesBetweenSignals = 200;
  for (int pauses = 0; ::waitpid(process, nullptr, WNOHANG) == 0; ++pauses) {
    if (pauses % pausesBetweenSignals == 0) ::kill(process, SIGTERM);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  process = -1;
}

void XorgServer::start(int displayNumberDescriptor) {
  // Between fork and exec a process with threads may not allocate memory.
  const std::string output = folder / "output";
  const std::string descriptor = std::to_string(displayNumberDescriptor);
  std::vector<std::string> words = {executable, "-config",
                                    std::filesystem::absolute(configuration)};
  for (const char* const word :
       {"-noreset", "-novtswitch", "-sharevts", "vt7", "-nolisten", "tcp"}) {
    words.emplace_back(word);
  }
  words.insert(words.end(), {"-logfile", folder / "Xorg.log", "-displayfd", descriptor});
  std::vector<char*> arguments(words.size() + 1, nullptr);
  std::ranges::transform(words, arguments.begin(), [](std::string& word) { return word.data(); });
  process = ::fork();
  if (process != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  ::fcntl(displayNumberDescriptor, F_SETFD, 0);
  sendOutputTo(output);
  ::execv(executable, arguments.data());
  ::_exit(127);
}

std::string XorgServer::readDisplayNumber(int descriptor) {
  std::string text;
  pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
  while (::poll(&readable, 1, startPatienceMilliseconds) > 0) {
    std::array<char, 16> buffer{};
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count <= 0) return {};
    text.append(buffer.data(), static_cast<std::size_t>(count));
    if (text.ends_with('\n')) return text.substr(0, text.size() - 1);
  }
  return {};
}

std::string XorgServer::logEnd() const {
  std::ifstream stream(folder / "output", std::ios::binary);
  const std::string log{std::istreambuf_iterator<char>(stream), {}};
  return log.size() > logEndBytes ? log.substr(log.size() - logEndBytes) : log;
}

}  // namespace brivane
