#pragma once

#include <filesystem>
#include <utility>
#include <variant>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Files/WholeFile.h"

namespace brivane {

/// An exclusive lock between processes (and threads), held until destroyed. It is on an empty file
/// of its own that stays, because the protected files are replaced; the lock file can't be a link.
/// The system releases the lock of a process that ends.
class FileLock {
 public:
  /// Waits for the lock for at most `patience`. A problem when it is still held then, or the lock
  /// file can't be created.
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
