#include "Tests/Bench/MeasuredProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace brivane::bench {
namespace {

/// The number behind `name` in a file of lines "Name:  number"; 0 when there is none.
std::int64_t numberIn(const std::filesystem::path& file, const std::string& name) {
  std::ifstream lines(file);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.starts_with(name + ":")) return std::strtoll(line.c_str() + name.size() + 1, {}, 10);
  }
  return 0;
}

}  // namespace

MeasuredProcess::MeasuredProcess(const std::filesystem::path& program) {
  std::string word = program;
  std::array<char*, 2> words = {word.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_WRONLY, 0);
  }
  if (posix_spawn(&process, word.c_str(), &actions, nullptr, words.data(), environ) != 0) {
    std::cerr << "could not start " << word << "; build it with ./bench" << std::endl;
    std::exit(1);
  }
  posix_spawn_file_actions_destroy(&actions);
}

MeasuredProcess::~MeasuredProcess() {
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
}

double MeasuredProcess::cpuSeconds() const {
  clockid_t clock{};
  timespec time{};
  clock_getcpuclockid(process, &clock);
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double MeasuredProcess::proportionalMegabytes() const {
  return static_cast<double>(numberIn(procFolder() / "smaps_rollup", "Pss")) / 1024;
}

double MeasuredProcess::residentMegabytes() const {
  return static_cast<double>(numberIn(procFolder() / "smaps_rollup", "Rss")) / 1024;
}

std::map<pid_t, std::int64_t> MeasuredProcess::wakeUps() const {
  std::map<pid_t, std::int64_t> all;
  for (const auto& thread : std::filesystem::directory_iterator(procFolder() / "task")) {
    const pid_t number = std::stoi(thread.path().filename().string());
    all[number] = numberIn(thread.path() / "status", "voluntary_ctxt_switches");
  }
  return all;
}

std::filesystem::path MeasuredProcess::procFolder() const {
  return std::filesystem::path("/proc") / std::to_string(process);
}

}  // namespace brivane::bench
