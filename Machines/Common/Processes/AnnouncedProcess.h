#pragma once

#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// The one process that announced itself at a file, told by a lock on it: the system knows the
/// lock's holder, and lets go of the lock however the holder ends. One object per process and file:
/// the system drops a process's lock when any of its open files of that name is closed.
class AnnouncedProcess {
 public:
  explicit AnnouncedProcess(std::filesystem::path fileToLock) : lockFile(std::move(fileToLock)) {}

  /// Who is announced; nothing when nobody is.
  std::optional<ProcessID> find() const;

  /// Announces this process until it or the object ends. False when another one is announced or
  /// the file can't be made; its folder must exist.
  bool announce();

  /// This process is not announced any more.
  void end();

 private:
  const std::filesystem::path lockFile;
  /// Open while this process is announced.
  FileDescriptor ownLock;
};

}  // namespace brivane
