#pragma once

#include <filesystem>
#include <utility>
#include <variant>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Files/WholeFile.h"

namespace brivane {

/// Holds a file for one process (or thread) at a time, until destroyed. The lock is on a file of
/// its own that stays, empty, because the files it protects are replaced whole; it can't be a link.
/// A process that ends in whatever way lets go of it.
class FileLock {
 public:
  /// Waits for the lock for at most `patience`; or says why it can't be had: it is still held then,
  /// or the lock file can't be made.
  static std::variant<FileLock, FileProblem> acquire(const std::filesystem::path& lockFile,
                                                     Runtime& runtime, Microseconds patience);

  FileLock(FileLock&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

 private:
  explicit FileLock(int openDescriptor) : descriptor(openDescriptor) {}

  int descriptor;
};

}  // namespace brivane
