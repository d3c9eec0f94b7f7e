#include "Machines/Linux/Applications.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "Machines/Linux/RuntimeFolder.h"

namespace brivane {
namespace {

constexpr const char* ownIdentifier = "com.quorrel.brivane";

struct flock wholeFileLock() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

}  // namespace

LinuxApplications::LinuxApplications(const std::optional<std::filesystem::path>& lockFolder)
    : lockFile(lockFolder ? std::optional(*lockFolder / "resident.lock") : std::nullopt) {}

std::optional<std::string> LinuxApplications::bundleIdentifier() {
  return ownIdentifier;
}

std::vector<ProcessID> LinuxApplications::runningApplications(const std::string& bundleIdentifier) {
  if (bundleIdentifier != ownIdentifier || !lockFile) return {};
  if (ownLock.isOpen()) return {ownProcessID()};
  const FileDescriptor file(::open(lockFile->c_str(), O_RDONLY | O_CLOEXEC));
  struct flock lock = wholeFileLock();
  if (!file.isOpen() || ::fcntl(file.get(), F_GETLK, &lock) != 0) return {};
  if (lock.l_type == F_UNLCK) return {};
  return {lock.l_pid};
}

ProcessID LinuxApplications::ownProcessID() {
  return ::getpid();
}

bool LinuxApplications::announce() {
  if (ownLock.isOpen()) return true;
  if (!lockFile || !makeRuntimeFolder(lockFile->parent_path())) return false;
  FileDescriptor file(::open(lockFile->c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  struct flock lock = wholeFileLock();
  if (!file.isOpen() || ::fcntl(file.get(), F_SETLK, &lock) != 0) return false;
  ownLock = std::move(file);
  return true;
}

}  // namespace brivane
