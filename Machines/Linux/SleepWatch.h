#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/System/DescriptorWatch.h"
#include "Machines/Linux/System/MessageBus.h"

namespace brivane {

/// Reports the machine's sleep and wake by logind's signals, and delays sleep (some seconds at
/// most) until the handler has returned. Without logind or a system bus it reports nothing. When
/// the bus is lost during sleep, the machine counts as awake. Main thread; destroy it before the
/// Runtime.
class SleepWatch {
 public:
  /// Called as a main-queue task: true before the machine sleeps, false after it woke.
  using Handler = std::function<void(bool goesToSleep)>;

  /// `busIsMissing` is called when there is no system bus: by the constructor, or when the bus is
  /// lost.
  SleepWatch(Runtime& machineRuntime, Handler sleepHandler, Task busIsMissing);
  SleepWatch(const SleepWatch&) = delete;
  SleepWatch& operator=(const SleepWatch&) = delete;

 private:
  static int receive(sd_bus_message* message, void* self, sd_bus_error* error);
  static int receiveInhibitor(sd_bus_message* reply, void* self, sd_bus_error* error);
  void sleepChanged(bool goesToSleep);
  void askForInhibitor();
  bool readAll();
  void busHasGone();

  const Handler handler;
  const Task logMissingBus;
  const MessageBusLibrary library;
  MessageBusLibrary::Connection bus;
  /// Delays sleep while open.
  FileDescriptor inhibitor;
  bool isAboutToSleep = false;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane
