#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// A private system bus with a service under logind's name.
class FakeLogind {
 public:
  FakeLogind();
  ~FakeLogind();
  FakeLogind(const FakeLogind&) = delete;
  FakeLogind& operator=(const FakeLogind&) = delete;

  /// The value of DBUS_SYSTEM_BUS_ADDRESS for programs that shall use it.
  const std::string& address() const { return bus.address(); }

  /// Announces that the machine goes to sleep, or that it woke.
  void announceSleep(bool goesToSleep);

  /// Gives the name on the bus away and takes it again, as a restarted logind does.
  void restart();

  /// "backlight intel_backlight 300" for each brightness that was set so far.
  std::vector<std::string> brightnessCalls();

  /// Whether the session may set brightnesses: it is the one at the screen.
  std::atomic<bool> isActive = true;
  std::atomic<bool> refusesInhibitors = false;
  std::atomic<int> refusals = 0;

  /// "sleep delay Brivane" for each inhibitor that is held now.
  std::vector<std::string> inhibitors();

  /// For the bus's callbacks.
  void note(const std::string& call);
  void noteInhibitor(const std::string& kind, int readEnd);

 private:
  const PrivateBus bus;
  std::vector<std::string> calls;
  struct Inhibitor {
    std::string kind;
    /// Of a pipe whose other end the holder has.
    int readEnd = -1;
  };
  std::vector<Inhibitor> given;
  BusPeer peer{bus.address()};
};

}  // namespace brivane
