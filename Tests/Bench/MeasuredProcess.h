#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <map>

namespace brivane::bench {

/// A resident program that is measured from outside. It is asked to end, and waited for, by the
/// destructor.
class MeasuredProcess {
 public:
  /// Starts it with this process's environment; its output goes nowhere.
  explicit MeasuredProcess(const std::filesystem::path& program);
  ~MeasuredProcess();
  MeasuredProcess(const MeasuredProcess&) = delete;
  MeasuredProcess& operator=(const MeasuredProcess&) = delete;

  /// CPU time so far, all threads, the kernel's part included.
  double cpuSeconds() const;

  /// Its share of the memory that it uses: what it has for itself, and of what it shares with
  /// others its part.
  double proportionalMegabytes() const;
  /// All of the memory that it uses, whoever else does.
  double residentMegabytes() const;

  /// How often each of its threads, by number, has gone to sleep and so was woken.
  std::map<pid_t, std::int64_t> wakeUps() const;

 private:
  std::filesystem::path procFolder() const;

  pid_t process = 0;
};

}  // namespace brivane::bench
