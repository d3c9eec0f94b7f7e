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

/// The folder with the state of a desk's hardware, shared by all processes on the desk. Created
/// when first needed. Any thread.
class StateFolder {
 public:
  StateFolder(std::filesystem::path folder, Runtime& machineRuntime, SystemLog& systemLog)
      : path(std::move(folder)), runtime(machineRuntime), log(systemLog) {}

  /// Locks the folder against other processes, or returns why it can't. After a timeout, later
  /// calls don't wait until one has succeeded.
  std::variant<FileLock, FileProblem> lock();

  /// Writes the line to the log once per process.
  void report(const std::string& line);
  /// Logs that a change could not be written, and why, in one line.
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
