#include "Machines/Common/Files/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {
namespace {

// Other processes hold the lock for well under a millisecond.
constexpr Microseconds pause = std::chrono::milliseconds(1);

int openLockFile(const std::filesystem::path& file) {
  return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
}

/// 0, or an error number: EWOULDBLOCK when another holds the lock until the deadline.
int lockBefore(Instant deadline, int descriptor, Runtime& runtime) {
  while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    const int error = errno;
    if (error != EWOULDBLOCK || runtime.now() >= deadline) return error;
    runtime.sleep(pause);
  }
  return 0;
}

/// The next turn, as long as the result exists: the lock of the folder. A process that takes a lock
/// again and again would otherwise leave hardly a moment to others on a busy machine; so it has to
/// wait until the turn of one who waits is over. From the deadline on nobody waits for a turn,
/// because the process that has it may be stopped.
FileDescriptor nextTurn(Instant deadline, const std::filesystem::path& folder, Runtime& runtime) {
  FileDescriptor turn(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (turn.isOpen()) lockBefore(deadline, turn.get(), runtime);
  return turn;
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
  const Instant start = runtime.now();
  const auto turn = nextTurn(start + patience / 2, lockFile.parent_path(), runtime);
  const int error = lockBefore(start + patience, descriptor, runtime);
  if (error == 0) return lock;
  if (error != EWOULDBLOCK) return FileProblem{std::generic_category().message(error)};
  return FileProblem{"another process holds the lock " + lockFile.string()};
}

FileLock::~FileLock() {
  if (descriptor >= 0) ::close(descriptor);
}

}  // namespace brivane
