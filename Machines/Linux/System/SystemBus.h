#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace brivane {

/// What is used of libsystemd's D-Bus client; loaded when this is made. A connection belongs to one
/// thread at a time.
class SystemBusLibrary {
 public:
  SystemBusLibrary();

  /// Nothing may be called otherwise.
  bool isLoaded() const { return loaded; }

  using Connection = std::shared_ptr<sd_bus>;
  /// A connection of its own to the system's bus, whose calls give up after a second; null when
  /// there is no such bus.
  Connection connect() const;

  decltype(&sd_bus_match_signal) matchSignal = nullptr;
  decltype(&sd_bus_process) process = nullptr;
  decltype(&sd_bus_get_fd) descriptor = nullptr;
  decltype(&sd_bus_flush) flush = nullptr;
  decltype(&sd_bus_message_read) readMessage = nullptr;
  decltype(&sd_bus_call_method) callMethod = nullptr;
  decltype(&sd_bus_call_method_async) callMethodLater = nullptr;
  decltype(&sd_bus_get_property_trivial) getProperty = nullptr;

 private:
  bool load();

  decltype(&sd_bus_open_system) openSystem = nullptr;
  decltype(&sd_bus_set_method_call_timeout) setTimeout = nullptr;
  decltype(&sd_bus_flush_close_unref) close = nullptr;
  bool loaded = false;
};

namespace logind {
inline constexpr auto service = "org.freedesktop.login1";
inline constexpr auto managerPath = "/org/freedesktop/login1";
inline constexpr auto managerInterface = "org.freedesktop.login1.Manager";
/// The session of whoever asks.
inline constexpr auto sessionPath = "/org/freedesktop/login1/session/auto";
inline constexpr auto sessionInterface = "org.freedesktop.login1.Session";
}  // namespace logind

}  // namespace brivane
