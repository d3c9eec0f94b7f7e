#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Linux/DescriptorWatch.h"
#include "Machines/Linux/SystemBus.h"

namespace brivane {

/// Hears from logind that the machine goes to sleep and that it woke. Without logind, or without a
/// system bus, it never hears anything. Main thread; it must end before the Runtime.
class SleepWatch {
 public:
  /// Called as a main-queue task: true when the machine is about to sleep, false when it woke.
  using Handler = std::function<void(bool goesToSleep)>;

  SleepWatch(Runtime& machineRuntime, Handler sleepHandler);
  SleepWatch(const SleepWatch&) = delete;
  SleepWatch& operator=(const SleepWatch&) = delete;

 private:
  static int receive(sd_bus_message* message, void* self, sd_bus_error* error);
  bool readAll();

  const Handler handler;
  const SystemBusLibrary library;
  SystemBusLibrary::Connection bus;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane
