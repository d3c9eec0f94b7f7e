#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "BrivaneCore/Seams/UserNotices.h"
#include "Machines/Linux/System/SessionBus.h"

namespace brivane {

/// Notices as the desktop's notifications (org.freedesktop.Notifications); without a session bus or
/// such a service nothing is shown. Each remembered name is an empty file.
class LinuxUserNotices : public UserNotices {
 public:
  /// The bus must outlive this.
  explicit LinuxUserNotices(SessionBus& sessionBus) : bus(sessionBus) {}
  LinuxUserNotices(const LinuxUserNotices&) = delete;
  LinuxUserNotices& operator=(const LinuxUserNotices&) = delete;

  bool remembers(const std::string& name) override;
  void remember(const std::string& name) override;
  void post(const UserNotice& notice, Task posted, Task pressed) override;

 private:
  static int receiveCapabilities(sd_bus_message* reply, void* self, sd_bus_error* error);
  static int receiveNumber(sd_bus_message* reply, void* self, sd_bus_error* error);
  static int receiveAction(sd_bus_message* signal, void* self, sd_bus_error* error);
  static int receiveClosing(sd_bus_message* signal, void* self, sd_bus_error* error);
  void listen(const std::string& signal, sd_bus_message_handler_t handler);
  void send(sd_bus_message* call, sd_bus_message_handler_t handler);
  void notify(bool hasActions, bool hasMarkup);

  SessionBus& bus;
  UserNotice waiting;
  Task whenPosted;
  Task whenPressed;
  /// The service's number of the notice; 0 while none is shown.
  std::uint32_t shown = 0;
};

}  // namespace brivane
