#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// A system bus of its own with somebody on it who answers to logind's name.
class FakeLogind {
 public:
  /// Throws when there is no "dbus-daemon" or it doesn't start.
  FakeLogind();
  ~FakeLogind();
  FakeLogind(const FakeLogind&) = delete;
  FakeLogind& operator=(const FakeLogind&) = delete;

  /// What DBUS_SYSTEM_BUS_ADDRESS has to say to programs that shall meet it.
  const std::string& address() const { return busAddress; }

  /// Tells everybody that the machine goes to sleep, or that it woke.
  void announceSleep(bool goesToSleep);

  /// "backlight intel_backlight 300" for each brightness that was set so far.
  std::vector<std::string> brightnessCalls();

  /// Whether the session may set brightnesses: it is the one at the screen.
  std::atomic<bool> isActive = true;
  std::atomic<bool> refusesInhibitors = false;

  /// "sleep delay Brivane" for each inhibitor that somebody holds now.
  std::vector<std::string> inhibitors();

  /// For the bus's callbacks.
  void note(const std::string& call);
  void noteInhibitor(const std::string& kind, int readEnd);

 private:
  void startDaemon();
  void serve();

  const TemporaryFolder folder;
  pid_t daemon = -1;
  std::string busAddress;
  std::mutex mutex;
  sd_bus* bus = nullptr;
  std::vector<std::string> calls;
  struct Inhibitor {
    std::string kind;
    /// Of a pipe whose other end the holder has.
    int readEnd = -1;
  };
  std::vector<Inhibitor> given;
  std::atomic<bool> isEnding = false;
  std::thread server;
};

}  // namespace brivane
