// The signal handler only writes a byte to a pipe (async-signal-safe); a serial queue reads it and
// queues the main-queue task. (Child processes would inherit blocked signals, as signalfd needs
// them, and existing threads would not block them.) The destructor installs empty handlers, so that
// a signal found ignored was ignored by the parent process.
#include "Machines/Common/Processes/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

constexpr char signalled = 's';
constexpr char ended = 'e';

/// Global, as signal handlers have no context.
std::atomic<int> handlersPipe = -1;

void writeToPipe(int) {
  const int before = errno;
  [[maybe_unused]] const auto written = ::write(handlersPipe, &signalled, 1);
  errno = before;
}

void doNothing(int) {}

bool isIgnored(int signal) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

void setAction(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    if (signal == SIGTERM || !isIgnored(signal)) ::sigaction(signal, &action, nullptr);
  }
}

/// Not inherited by child processes.
std::array<int, 2> makeSignalPipe() {
  std::array<int, 2> ends{};
#ifdef __linux__
  const bool isMade = ::pipe2(ends.data(), O_CLOEXEC) == 0;
#else
  const bool isMade = ::pipe(ends.data()) == 0;
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
#endif
  if (!isMade) fatal("no pipe could be made for signals");
  return ends;
}

void hand(int pipe, Runtime& runtime, const Task& handler) {
  char news = ended;
  while (true) {
    const auto count = ::read(pipe, &news, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count != 1 || news == ended) return;
    runtime.async(handler);
  }
}

}  // namespace

TerminationSignals::TerminationSignals(Runtime& machineRuntime, Task handler)
    : queue(machineRuntime.makeSerialQueue("signals", QueueQuality::userInitiated)) {
  const auto ends = makeSignalPipe();
  readEnd = FileDescriptor(ends[0]);
  writeEnd = FileDescriptor(ends[1]);
  ::fcntl(writeEnd.get(), F_SETFL, O_NONBLOCK);
  int nobody = -1;
  if (!handlersPipe.compare_exchange_strong(nobody, writeEnd.get())) {
    fatal("the termination signals are waited for twice");
  }
  queue->async([pipe = readEnd.get(), &machineRuntime, task = std::move(handler)] {
    hand(pipe, machineRuntime, task);
  });
  setAction(writeToPipe);
}

TerminationSignals::~TerminationSignals() {
  setAction(doNothing);
  handlersPipe = -1;
  while (::write(writeEnd.get(), &ended, 1) < 0 && errno == EINTR) {
  }
  queue->sync([] {});
}

}  // namespace brivane
