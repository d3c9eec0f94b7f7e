#include "Machines/Common/Files/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brivane {
namespace {

// Other processes hold the lock for well under a millisecond.
constexpr Microseconds pause = std::chrono::milliseconds(1);

int openLockFile(const std::filesystem::path& file) {
  return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
}

}  // namespace

std::variant<FileLock, FileProblem> FileLock::acquire(const std::filesystem::path& lockFile,
                                                      Runtime& runtime, Microseconds patience) {
  int descriptor = openLockFile(lockFile);
  if (descriptor < 0 && errno == ENOENT) {
    std::error_code failed;
    std::filesystem::create_directories(lockFile.parent_path(), failed);
    if (failed) return FileProblem{failed.message()};
    descriptor = openLockFile(lockFile);
  }
  if (descriptor < 0) return FileProblem{std::generic_category().message(errno)};
  FileLock lock(descriptor);
  const Instant deadline = runtime.now() + patience;
  while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (runtime.now() >= deadline) {
      return FileProblem{"another process holds the lock " + lockFile.string()};
    }
    runtime.sleep(pause);
  }
  return lock;
}

FileLock::~FileLock() {
  if (descriptor >= 0) ::close(descriptor);
}

}  // namespace brivane
