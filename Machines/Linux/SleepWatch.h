#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Seams/DelayedTasks.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/System/DescriptorWatch.h"
#include "Machines/Linux/System/MessageBus.h"

namespace brivane {

/// Reports the machine's sleep and wake by logind's signals, and delays sleep (some seconds at
/// most) until the handler has returned. Without logind or a system bus it reports nothing until
/// they are there (again): a bus is looked for every five seconds. When either is lost during
/// sleep, the machine counts as awake. Main thread; destroy it before the Runtime.
class SleepWatch {
 public:
  /// Called as a main-queue task: true before the machine sleeps, false after it woke.
  using Handler = std::function<void(bool goesToSleep)>;

  /// `busIsMissing` is called when there is no system bus: once by the constructor, or whenever the
  /// bus is lost.
  SleepWatch(Runtime& machineRuntime, Handler sleepHandler, Task busIsMissing);
  SleepWatch(const SleepWatch&) = delete;
  SleepWatch& operator=(const SleepWatch&) = delete;

 private:
  static int receiveSleep(sd_bus_message* message, void* self, sd_bus_error* error);
  static int receiveOwner(sd_bus_message* message, void* self, sd_bus_error* error);
  static int receiveInhibitor(sd_bus_message* reply, void* self, sd_bus_error* error);
  bool connect();
  bool match(const char* rule, sd_bus_message_handler_t receive);
  void connectLater();
  void sleepChanged(bool goesToSleep);
  void endSleep();
  void askForInhibitor();
  bool readAll();
  void busHasGone();
  void noteMissingBus();

  Runtime& runtime;
  const Handler handler;
  const Task logMissingBus;
  const MessageBusLibrary library;
  MessageBusLibrary::Connection bus;
  /// Delays sleep while open.
  FileDescriptor inhibitor;
  bool isAboutToSleep = false;
  bool isMissing = false;
  std::optional<DescriptorWatch> watch;
  DelayedTasks attempts;
  LivenessAnchor anchor;
};

}  // namespace brivane
