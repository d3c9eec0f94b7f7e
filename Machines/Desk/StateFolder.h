#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "Machines/Common/FileLock.h"

namespace brivane {

/// The folder in which the state of a desk's hardware lives, shared by all processes on the desk.
/// It is made when it is first needed. Not for use by two threads at once.
class StateFolder {
 public:
  StateFolder(std::filesystem::path folder, Runtime& machineRuntime, SystemLog& systemLog)
      : path(std::move(folder)), runtime(machineRuntime), log(systemLog) {}

  /// Keeps other processes out of the folder until the lock is dropped. Nothing when that can't be
  /// had, which is waited for at most 2 s, and not at all once it was waited for in vain.
  std::optional<FileLock> lock();

  /// Writes the line to the log, unless this process has done so already.
  void report(const std::string& line);

  const std::filesystem::path path;
  Runtime& runtime;
  SystemLog& log;

 private:
  bool lockIsStuck = false;
  std::set<std::string> reported;
};

}  // namespace brivane
