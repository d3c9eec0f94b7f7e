#pragma once

#include <memory>
#include <optional>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Linux/System/DescriptorWatch.h"
#include "Machines/Linux/System/MessageBus.h"

namespace brivane {

/// The program's one connection to the user's session bus, made on first use. What arrives is
/// handled by main-queue tasks, in the handlers that its users have registered with `library()`. A
/// bus that is lost stays lost: it ends with the session. Main thread; destroy it before the
/// Runtime, and its users before it.
class SessionBus {
 public:
  explicit SessionBus(Runtime& machineRuntime) : runtime(machineRuntime) {}
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  /// Null without a session bus or libsystemd, and once the bus is lost. Messages that are sent
  /// before the connection stands leave once it does.
  sd_bus* connection();

  /// Only after `connection()` gave one.
  const MessageBusLibrary& library() const { return *loaded; }

 private:
  void connect();
  void readLater();
  bool read();

  Runtime& runtime;
  /// Null before the first use.
  std::unique_ptr<const MessageBusLibrary> loaded;
  MessageBusLibrary::Connection bus;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane
