#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// A private message bus, on which any process may own any name. It ends with this object.
class PrivateBus {
 public:
  /// `services`: the command line that the bus runs when somebody wants a name that nobody has, by
  /// name. Throws when there is no "dbus-daemon" or it doesn't start.
  explicit PrivateBus(const std::map<std::string, std::string>& services = {});
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// The value of DBUS_SESSION_BUS_ADDRESS or DBUS_SYSTEM_BUS_ADDRESS.
  const std::string& address() const { return busAddress; }

 private:
  const TemporaryFolder folder;
  pid_t daemon = -1;
  std::string busAddress;
};

/// A service on such a bus, which answers on a thread of its own.
class BusPeer {
 public:
  explicit BusPeer(const std::string& address);
  ~BusPeer();
  BusPeer(const BusPeer&) = delete;
  BusPeer& operator=(const BusPeer&) = delete;

  /// Runs `work` with the connection to itself: no callback runs meanwhile. Callbacks have it to
  /// themselves already.
  template <typename Work>
  auto exclusively(Work work) {
    const std::scoped_lock lock(mutex);
    return work(bus);
  }

  /// Offers an object and then answers to the name. For constructors: `table` and `owner` stay.
  void offer(const char* path, const char* interface, const sd_bus_vtable* table, void* owner);
  void own(const char* name);
  bool isOnBus(const std::string& name);

 private:
  void serve();

  std::mutex mutex;
  sd_bus* bus = nullptr;
  std::atomic<bool> isEnding = false;
  std::thread server;
};

/// Throws when the bus has refused.
void requireBus(int result, const char* what);

}  // namespace brivane
