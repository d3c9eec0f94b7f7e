#pragma once

#include <unistd.h>

#include <utility>

namespace brivane {

/// Owns a file descriptor; -1 is none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int opened = -1) : number(opened) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number, other.number);
    return *this;
  }
  ~FileDescriptor() {
    if (number >= 0) ::close(number);
  }

  bool isOpen() const { return number >= 0; }
  int get() const { return number; }

  /// Closes now; false when the system reports a write error only here.
  bool close() { return ::close(std::exchange(number, -1)) == 0; }

 private:
  int number;
};

}  // namespace brivane
