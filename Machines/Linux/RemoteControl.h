#pragma once

#include <systemd/sd-bus.h>

#include "BrivaneCore/Seams/RemoteCommands.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Linux/System/SessionBus.h"

namespace brivane {

/// The resident program's object on the session bus (see RemoteInterface.h), for `brivane-ctl` and
/// other programs. Without a session bus nobody asks. Main thread; destroy it before the bus.
class LinuxRemoteControl {
 public:
  LinuxRemoteControl(SessionBus& userSessionBus, SystemLog& systemLog)
      : sessionBus(userSessionBus), log(systemLog) {}
  LinuxRemoteControl(const LinuxRemoteControl&) = delete;
  LinuxRemoteControl& operator=(const LinuxRemoteControl&) = delete;

  /// Null without a session bus. At most one at a time.
  Observation answerRequests(RemoteCommands& remoteCommands);

 private:
  static int receive(sd_bus_message* call, void* self, sd_bus_error* error);
  static int receiveName(sd_bus_message* reply, void* self, sd_bus_error* error);
  int answer(sd_bus_message* call);

  int introspect(sd_bus_message* call);
  int up(sd_bus_message* call);
  int down(sd_bus_message* call);
  int set(sd_bus_message* call);
  int get(sd_bus_message* call);
  int list(sd_bus_message* call);
  int showMenu(sd_bus_message* call);
  int showHotkeyEditor(sd_bus_message* call);

  int reply(sd_bus_message* call, const RemoteLevel& level) const;
  void append(sd_bus_message* list, const RemoteDisplay& display) const;
  const MessageBusLibrary& library() const { return sessionBus.library(); }

  SessionBus& sessionBus;
  SystemLog& log;
  /// While requests are answered.
  RemoteCommands* commands = nullptr;
};

}  // namespace brivane
