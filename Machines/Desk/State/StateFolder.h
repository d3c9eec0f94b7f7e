#pragma once

#include <atomic>
#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "Machines/Common/Files/FileLock.h"

namespace brivane {

/// The folder in which the state of a desk's hardware lives, shared by all processes on the desk.
/// It is made when it is first needed. Any thread.
class StateFolder {
 public:
  StateFolder(std::filesystem::path folder, Runtime& machineRuntime, SystemLog& systemLog)
      : path(std::move(folder)), runtime(machineRuntime), log(systemLog) {}

  /// Keeps other processes out of the folder until the lock is dropped; or why that can't be. Only
  /// the first wait in vain is a long one.
  std::variant<FileLock, FileProblem> lock();

  /// Writes the line to the log, unless this process has done so already.
  void report(const std::string& line);
  /// A change could not be written: says so, and why, in one line of the log.
  void reportUnsaved(const std::string& reason);
  bool hasUnsaved() const { return anyUnsaved; }

  const std::filesystem::path path;
  Runtime& runtime;
  SystemLog& log;

 private:
  std::atomic<bool> lockIsStuck = false;
  std::atomic<bool> anyUnsaved = false;
  std::mutex mutex;
  std::set<std::string> reported;
};

}  // namespace brivane
