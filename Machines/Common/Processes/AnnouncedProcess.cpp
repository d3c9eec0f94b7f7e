#include "Machines/Common/Processes/AnnouncedProcess.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace brivane {
namespace {

struct flock wholeFileLock() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

}  // namespace

std::optional<ProcessID> AnnouncedProcess::find() const {
  if (ownLock.isOpen()) return ::getpid();
  const FileDescriptor file(::open(lockFile.c_str(), O_RDONLY | O_CLOEXEC));
  struct flock lock = wholeFileLock();
  if (!file.isOpen() || ::fcntl(file.get(), F_GETLK, &lock) != 0) return std::nullopt;
  if (lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid;
}

bool AnnouncedProcess::announce() {
  if (ownLock.isOpen()) return true;
  FileDescriptor file(::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  struct flock lock = wholeFileLock();
  if (!file.isOpen() || ::fcntl(file.get(), F_SETLK, &lock) != 0) return false;
  ownLock = std::move(file);
  return true;
}

void AnnouncedProcess::end() {
  ownLock = FileDescriptor();
}

}  // namespace brivane
