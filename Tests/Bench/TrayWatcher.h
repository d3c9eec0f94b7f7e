#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace brivane::bench {

/// The desktop's part of a tray on a session bus: status items register with it, and nobody shows
/// them.
class TrayWatcher {
 public:
  using Clock = std::chrono::steady_clock;

  /// On the bus at that address; throws when the bus refuses.
  explicit TrayWatcher(const std::string& busAddress);
  ~TrayWatcher();
  TrayWatcher(const TrayWatcher&) = delete;
  TrayWatcher& operator=(const TrayWatcher&) = delete;

  /// When the next item since the last call registered; nothing when none does for ten seconds.
  std::optional<Clock::time_point> awaitItem();

  /// For the bus's callbacks.
  void noteItem();

 private:
  void serve();

  sd_bus* bus = nullptr;
  std::mutex mutex;
  std::condition_variable registered;
  std::optional<Clock::time_point> itemTime;
  std::atomic<bool> isEnding = false;
  std::thread server;
};

}  // namespace brivane::bench
