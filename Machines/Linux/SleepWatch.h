#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/System/DescriptorWatch.h"
#include "Machines/Linux/System/SystemBus.h"

namespace brivane {

/// Hears from logind that the machine goes to sleep and that it woke, and has it wait with the
/// sleep (some seconds at most) until the handler has returned. Without logind, or without a system
/// bus, it never hears anything. When the bus goes while the machine sleeps, it counts as awake.
/// Main thread; it must end before the Runtime.
class SleepWatch {
 public:
  /// Called as a main-queue task: true when the machine is about to sleep, false when it woke.
  using Handler = std::function<void(bool goesToSleep)>;

  /// `busIsMissing` is called once there is no system bus: by the constructor, or when it has gone.
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
  const Task sayThatBusIsMissing;
  const SystemBusLibrary library;
  SystemBusLibrary::Connection bus;
  /// Sleep waits as long as this is open.
  FileDescriptor inhibitor;
  bool isAboutToSleep = false;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane
