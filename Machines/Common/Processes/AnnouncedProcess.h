#pragma once

#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// The one process that announced itself by a lock on a file: the system knows the lock's holder,
/// and releases the lock however the holder ends. Only one object per process and file: closing any
/// descriptor of the file releases the process's lock (POSIX record locks).
class AnnouncedProcess {
 public:
  explicit AnnouncedProcess(std::filesystem::path fileToLock) : lockFile(std::move(fileToLock)) {}

  /// The announced process; nothing without one.
  std::optional<ProcessID> find() const;

  /// Announces this process until it ends or the object is destroyed. False when another process is
  /// announced or the file can't be created; its folder must exist.
  bool announce();

  /// Withdraws the announcement.
  void end();

 private:
  const std::filesystem::path lockFile;
  /// Open while this process is announced.
  FileDescriptor ownLock;
};

}  // namespace brivane
