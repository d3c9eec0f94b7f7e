// A serial queue waits for inotify events and forwards them to the main queue. Files are replaced
// by renaming, so only renames and removals matter. An inotify watch follows the removed folder, so
// the parent is watched until the folder exists again. On a Mac desks are for scenarios alone, in
// which no other process takes part, and nothing is watched.
#include "Machines/Desk/State/FolderWatch.h"

#ifdef __linux__

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <string_view>
#include <system_error>

namespace brivane {
namespace {

class Listener {
 public:
  Listener(const std::filesystem::path& watchedFolder, std::string watchedFile)
      : folder(std::filesystem::absolute(watchedFolder)),
        fileName(std::move(watchedFile)),
        notices(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

  bool start() {
    std::error_code ignored;  // adding the watch fails then
    std::filesystem::create_directories(folder, ignored);
    return notices.isOpen() && watchFolder();
  }

  /// Waits for a relevant event; false when `ending` becomes readable.
  bool wait(int ending) {
    std::array<pollfd, 2> open = {{{notices.get(), POLLIN, 0}, {ending, POLLIN, 0}}};
    while (true) {
      ::poll(open.data(), open.size(), -1);
      if (open[1].revents != 0) return false;
      if (open[0].revents != 0 && readNotices()) return true;
    }
  }

 private:
  bool watchFolder() {
    constexpr auto news = IN_MOVED_TO | IN_DELETE | IN_MOVE_SELF | IN_ONLYDIR;
    inFolder = ::inotify_add_watch(notices.get(), folder.c_str(), news);
    return inFolder >= 0;
  }

  /// After the folder's removal; false while there is no new one.
  bool watchAgain() {
    const auto above = folder.parent_path();
    if (!watchFolder()) {
      constexpr auto news = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR;
      aboveFolder = ::inotify_add_watch(notices.get(), above.c_str(), news);
      if (!watchFolder()) return false;
    }
    if (aboveFolder >= 0) ::inotify_rm_watch(notices.get(), aboveFolder);
    aboveFolder = -1;
    return true;
  }

  /// Whether a relevant event is among them.
  bool readNotices() {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const auto count = ::read(notices.get(), buffer.data(), buffer.size());
    bool matters = false;
    for (ssize_t position = 0; position < count;) {
      const auto* const notice =
          reinterpret_cast<const inotify_event*>(buffer.data() + position);  // NOLINT
      matters = hear(*notice) || matters;
      position += static_cast<ssize_t>(sizeof(inotify_event) + notice->len);
    }
    return matters;
  }

  bool hear(const inotify_event& notice) {
    const std::string_view name = notice.len > 0 ? static_cast<const char*>(notice.name) : "";
    if ((notice.mask & IN_Q_OVERFLOW) != 0) return true;
    if (notice.wd == aboveFolder) {
      return inFolder < 0 && name == folder.filename().native() && watchAgain();
    }
    if (notice.wd != inFolder) return false;
    if ((notice.mask & IN_MOVE_SELF) != 0) ::inotify_rm_watch(notices.get(), inFolder);
    if ((notice.mask & IN_IGNORED) != 0) return watchAgain();
    return fileName.empty() ? name.ends_with(".json") : name == fileName;
  }

  const std::filesystem::path folder;
  const std::string fileName;
  const FileDescriptor notices;
  int inFolder = -1;
  int aboveFolder = -1;
};

}  // namespace

FolderWatch::FolderWatch(const std::filesystem::path& folder, const std::string& fileName,
                         Runtime& machineRuntime, Task handler)
    : ending(::eventfd(0, EFD_CLOEXEC)) {
  const auto listener = std::make_shared<Listener>(folder, fileName);
  if (!ending.isOpen() || !listener->start()) return;
  queue = machineRuntime.makeSerialQueue("desk", QueueQuality::userInitiated);
  const auto isToldSoon = std::make_shared<std::atomic<bool>>(false);
  const Task tell = [isToldSoon, watch = anchor.watch(), task = std::move(handler)] {
    *isToldSoon = false;
    if (watch.isAlive()) task();
  };
  queue->async([listener, isToldSoon, tell, &machineRuntime, end = ending.get()] {
    while (listener->wait(end)) {
      if (!isToldSoon->exchange(true)) machineRuntime.async(tell);
    }
  });
}

FolderWatch::~FolderWatch() {
  anchor.kill();
  if (!queue) return;
  const std::uint64_t one = 1;
  while (::write(ending.get(), &one, sizeof one) < 0 && errno == EINTR) {
  }
  queue->sync([] {});
}

}  // namespace brivane

#else

namespace brivane {

FolderWatch::FolderWatch(const std::filesystem::path&, const std::string&, Runtime&, Task) {}

FolderWatch::~FolderWatch() = default;

}  // namespace brivane

#endif
