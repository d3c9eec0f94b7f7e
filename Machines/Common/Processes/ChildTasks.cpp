// The child's own alarm ends an overdue task, so that none is left when this process is killed.
#include "Machines/Common/Processes/ChildTasks.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>
#include <vector>

#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

struct ChildTasks::Running {
  pid_t child = 0;
  FileDescriptor output;
  std::string result;
  Ended ended;
};

namespace {

void writeResult(int descriptor, const std::string& result) {
  std::size_t done = 0;
  while (done < result.size()) {
    const ssize_t count = ::write(descriptor, result.data() + done, result.size() - done);
    if (count < 0 && errno != EINTR) std::abort();
    if (count > 0) done += static_cast<std::size_t>(count);
  }
}

/// An exception is a crash: a handler of the parent's must not go on with the parent's work.
[[noreturn]] void runAsChild(const ChildTasks::Task& task, int output, unsigned limit) noexcept {
  std::signal(SIGALRM, SIG_DFL);
  ::alarm(limit);
  // The same crash may be provoked a hundred times.
  const rlimit noCoreFile{0, 0};
  ::setrlimit(RLIMIT_CORE, &noCoreFile);
  writeResult(output, task());
  ::_exit(0);
}

/// Reads what is there; false at the end.
bool readSome(int descriptor, std::string& text) {
  std::array<char, 4096> buffer{};
  const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
  if (count < 0) return errno == EINTR;
  text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0;
}

Microseconds timeOf(const timeval& time) {
  return std::chrono::seconds(time.tv_sec) + Microseconds(time.tv_usec);
}

}  // namespace

ChildTasks::ChildTasks(std::size_t most, unsigned limitSeconds)
    : mostAtOnce(most), limit(limitSeconds) {}

ChildTasks::~ChildTasks() {
  for (auto& task : running) {
    ::kill(task.child, SIGKILL);
    endOf(task);
  }
}

void ChildTasks::start(const Task& task, Ended ended) {
  while (running.size() >= mostAtOnce) awaitOutput();
  std::array<int, 2> ends{-1, -1};
  const bool hasPipe = ::pipe(ends.data()) == 0;
  FileDescriptor output(ends[0]);
  const FileDescriptor input(ends[1]);
  const pid_t child = hasPipe ? ::fork() : -1;
  if (child == 0) runAsChild(task, input.get(), limit);
  if (child < 0) {
    return ended({ChildTaskEnd::Kind::crashed, "", std::generic_category().message(errno)});
  }
  running.push_back({child, std::move(output), "", std::move(ended)});
}

void ChildTasks::finish() {
  while (!running.empty()) awaitOutput();
}

void ChildTasks::awaitOutput() {
  std::vector<pollfd> outputs;
  for (const auto& task : running) outputs.push_back({task.output.get(), POLLIN, 0});
  if (::poll(outputs.data(), static_cast<nfds_t>(outputs.size()), -1) <= 0) return;
  auto task = running.begin();
  for (const auto& output : outputs) {
    const auto current = task++;
    if (output.revents == 0 || readSome(output.fd, current->result)) continue;
    const auto end = endOf(*current);
    const auto ended = std::move(current->ended);
    running.erase(current);
    ended(end);
  }
}

ChildTaskEnd ChildTasks::endOf(Running& task) {
  int status = 0;
  rusage usage{};
  while (::wait4(task.child, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  ChildTaskEnd end;
  end.processorTime = timeOf(usage.ru_utime) + timeOf(usage.ru_stime);
  if (WIFSIGNALED(status)) {
    if (WTERMSIG(status) == SIGALRM) end.kind = ChildTaskEnd::Kind::overdue;
    end.reason = ::strsignal(WTERMSIG(status));
  } else if (WEXITSTATUS(status) != 0) {
    end.reason = "exit status " + std::to_string(WEXITSTATUS(status));
  } else {
    end.kind = ChildTaskEnd::Kind::done;
    end.result = std::move(task.result);
  }
  return end;
}

ChildTaskEnd runChildTask(const ChildTasks::Task& task, unsigned limitSeconds) {
  ChildTaskEnd result;
  ChildTasks one(1, limitSeconds);
  one.start(task, [&](const ChildTaskEnd& end) { result = end; });
  one.finish();
  return result;
}

}  // namespace brivane
