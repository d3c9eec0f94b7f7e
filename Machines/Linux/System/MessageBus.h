#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace brivane {

class SharedLibrary;

/// The used part of libsystemd's D-Bus client; loaded by the constructor. A connection must be used
/// by one thread at a time.
class MessageBusLibrary {
 public:
  MessageBusLibrary();

  /// If false, nothing else may be called.
  bool isLoaded() const { return loaded; }

  using Connection = std::shared_ptr<sd_bus>;
  /// A new connection to the system bus; null without a bus. sd-bus waits for answers for 25 s,
  /// and gives up one that has come in time but is read later.
  Connection connectToSystem() const;
  /// The same for the user's session bus.
  Connection connectToSession() const;

  decltype(&sd_bus_add_match_async) matchLater = nullptr;
  decltype(&sd_bus_is_open) isOpen = nullptr;
  decltype(&sd_bus_is_ready) isReady = nullptr;
  decltype(&sd_bus_process) process = nullptr;
  decltype(&sd_bus_get_fd) descriptor = nullptr;
  decltype(&sd_bus_message_read) readMessage = nullptr;
  decltype(&sd_bus_call_method) callMethod = nullptr;
  decltype(&sd_bus_call_method_async) callMethodLater = nullptr;
  decltype(&sd_bus_get_property_trivial) getProperty = nullptr;
  decltype(&sd_bus_set_method_call_timeout) setTimeout = nullptr;

  // For an object of one's own on the bus.
  decltype(&sd_bus_add_object) addObject = nullptr;
  decltype(&sd_bus_slot_unref) dropSlot = nullptr;
  decltype(&sd_bus_request_name_async) requestName = nullptr;
  decltype(&sd_bus_message_is_method_call) isMethodCall = nullptr;
  decltype(&sd_bus_message_has_signature) hasSignature = nullptr;
  decltype(&sd_bus_reply_method_return) reply = nullptr;
  decltype(&sd_bus_reply_method_errorf) replyError = nullptr;

  // For messages that are made and read piece by piece.
  decltype(&sd_bus_message_new_method_call) newCall = nullptr;
  decltype(&sd_bus_message_new_method_return) newReply = nullptr;
  decltype(&sd_bus_message_append) append = nullptr;
  decltype(&sd_bus_message_open_container) openContainer = nullptr;
  decltype(&sd_bus_message_close_container) closeContainer = nullptr;
  decltype(&sd_bus_message_enter_container) enterContainer = nullptr;
  decltype(&sd_bus_message_exit_container) exitContainer = nullptr;
  decltype(&sd_bus_message_skip) skip = nullptr;
  decltype(&sd_bus_message_set_auto_start) setAutoStart = nullptr;
  decltype(&sd_bus_send) send = nullptr;
  decltype(&sd_bus_call) call = nullptr;
  decltype(&sd_bus_call_async) callLater = nullptr;
  decltype(&sd_bus_error_free) freeError = nullptr;
  decltype(&sd_bus_message_unref) dropMessage = nullptr;

 private:
  bool load();
  bool loadForObjects(const SharedLibrary& systemd);
  bool loadForMessages(const SharedLibrary& systemd);
  /// `open` is one of the two functions below.
  Connection connect(decltype(&sd_bus_open_system) open) const;

  decltype(&sd_bus_open_system) openSystem = nullptr;
  decltype(&sd_bus_open_user) openUser = nullptr;
  decltype(&sd_bus_close_unref) close = nullptr;
  bool loaded = false;
};

namespace logind {
inline constexpr auto service = "org.freedesktop.login1";
inline constexpr auto managerPath = "/org/freedesktop/login1";
inline constexpr auto managerInterface = "org.freedesktop.login1.Manager";
/// The caller's session.
inline constexpr auto sessionPath = "/org/freedesktop/login1/session/auto";
inline constexpr auto sessionInterface = "org.freedesktop.login1.Session";
}  // namespace logind

}  // namespace brivane
