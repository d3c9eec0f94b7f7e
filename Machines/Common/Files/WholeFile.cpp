#include "Machines/Common/Files/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <system_error>

#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Common/Files/ModifiedAt.h"

namespace brivane {
namespace {

FileProblem lastProblem() {
  return {std::generic_category().message(errno), errno == ENOENT, true};
}

bool writeAll(int descriptor, const std::string& content) {
  std::size_t done = 0;
  while (done < content.size()) {
    const ssize_t count = ::write(descriptor, content.data() + done, content.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

bool isBefore(const timespec& one, const timespec& other) {
  return one.tv_sec != other.tv_sec ? one.tv_sec < other.tv_sec : one.tv_nsec < other.tv_nsec;
}

/// File times advance in steps of some milliseconds, and inode numbers are reused: versions written
/// within one step could have equal stamps. So each is dated at least a nanosecond after the one it
/// replaces.
void dateAfter(const std::filesystem::path& replaced, int descriptor) {
  constexpr long lastNanosecond = 999'999'999;
  struct stat before {};
  struct stat now {};
  if (::stat(replaced.c_str(), &before) != 0 || ::fstat(descriptor, &now) != 0) return;
  timespec date = modifiedAt(before);
  if (isBefore(date, modifiedAt(now))) return;
  if (++date.tv_nsec > lastNanosecond) date = {date.tv_sec + 1, 0};
  const std::array<timespec, 2> times = {{{0, UTIME_OMIT}, date}};
  ::futimens(descriptor, times.data());
}

std::optional<FileProblem> writeNewFile(const std::filesystem::path& file,
                                        const std::filesystem::path& replaced,
                                        const std::string& content) {
  // Left by a process that ended in between. Removed, not truncated: another process may still read
  // it.
  ::unlink(file.c_str());
  FileDescriptor descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!descriptor.isOpen()) return lastProblem();
  if (!writeAll(descriptor.get(), content)) return lastProblem();
  dateAfter(replaced, descriptor.get());
  if (!descriptor.close()) return lastProblem();
  return std::nullopt;
}

/// File systems that flush on a rename over a file don't flush on an exchange. An exchange would
/// accept a folder, too.
bool exchange([[maybe_unused]] const std::filesystem::path& fresh,
              [[maybe_unused]] const std::filesystem::path& file) {
#ifdef RENAME_EXCHANGE
  std::error_code ignored;  // the file may not exist yet
  if (std::filesystem::is_directory(file, ignored)) return false;
  if (::renameat2(AT_FDCWD, fresh.c_str(), AT_FDCWD, file.c_str(), RENAME_EXCHANGE) == 0) {
    ::unlink(fresh.c_str());
    return true;
  }
#endif
  return false;
}

bool replace(const std::filesystem::path& fresh, const std::filesystem::path& file,
             PowerCut powerCut) {
  if (powerCut == PowerCut::mayEmptyFile && exchange(fresh, file)) return true;
  return ::rename(fresh.c_str(), file.c_str()) == 0;
}

void syncPath(const std::filesystem::path& path, int flags) {
  const FileDescriptor descriptor(::open(path.c_str(), flags | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.get());
}

std::string modificationTime(const struct stat& status) {
  std::tm time{};
  std::array<char, 32> text{};
  ::gmtime_r(&status.st_mtime, &time);
  std::strftime(text.data(), text.size(), "%Y-%m-%d-%H%M%S", &time);
  return text.data();
}

}  // namespace

std::optional<FileStamp> stampOf(const std::filesystem::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return std::nullopt;
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  const timespec modified = modifiedAt(status);
  return FileStamp{static_cast<std::uint64_t>(status.st_dev), status.st_ino,
                   modified.tv_sec * nanosecondsPerSecond + modified.tv_nsec, status.st_size};
}

std::variant<std::string, FileProblem> readWholeFile(const std::filesystem::path& file,
                                                     std::size_t maximumBytes, Links links) {
  // Non-blocking, so that a FIFO of that name can't block the program.
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  const int linkFlag = links == Links::refused ? O_NOFOLLOW : 0;
  const FileDescriptor descriptor(::open(file.c_str(), flags | linkFlag));
  struct stat status {};
  if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) return lastProblem();
  if (S_ISDIR(status.st_mode)) return FileProblem{"it is a folder"};
  if (!S_ISREG(status.st_mode)) return FileProblem{"it is no ordinary file"};
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > maximumBytes) {
    return FileProblem{"it has " + std::to_string(size) + " bytes, more than the " +
                       std::to_string(maximumBytes) + " allowed"};
  }
  std::string content(size, '\0');
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = ::read(descriptor.get(), content.data() + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return lastProblem();
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  content.resize(done);
  return content;
}

std::optional<FileProblem> writeWholeFile(const std::filesystem::path& file,
                                          const std::string& content, PowerCut powerCut) {
  std::filesystem::path fresh = file;
  fresh += ".new";
  auto problem = writeNewFile(fresh, file, content);
  if (problem && problem->isAbsent) {
    std::error_code ignored;  // the second try reports the problem
    std::filesystem::create_directories(file.parent_path(), ignored);
    problem = writeNewFile(fresh, file, content);
  }
  if (!problem && !replace(fresh, file, powerCut)) problem = lastProblem();
  if (problem) ::unlink(fresh.c_str());
  return problem;
}

void syncFileToDisk(const std::filesystem::path& file) {
  syncPath(file, O_RDONLY);
  syncPath(file.parent_path(), O_RDONLY | O_DIRECTORY);
}

std::variant<std::filesystem::path, FileProblem> setAside(const std::filesystem::path& file) {
  struct stat status {};
  if (::lstat(file.c_str(), &status) != 0) return lastProblem();
  const std::string dated = file.string() + ".unreadable-" + modificationTime(status);
  for (int number = 1;; ++number) {
    const std::string name = number == 1 ? dated : dated + "-" + std::to_string(number);
    struct stat taken {};
    if (::lstat(name.c_str(), &taken) == 0) continue;
    if (::rename(file.c_str(), name.c_str()) != 0) return lastProblem();
    return std::filesystem::path(name);
  }
}

}  // namespace brivane
