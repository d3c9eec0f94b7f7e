#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "Machines/Linux/System/SystemBus.h"

namespace brivane {

/// logind's way to a backlight: it sets one for whoever sits at the screen. Library and bus are
/// opened when they are first needed. Any thread.
class SessionBacklight {
 public:
  /// Whether this process belongs to a session that may set backlights now.
  bool canSet();

  /// `name` as the kernel's folder of backlights has it. 0, or the system's error number.
  std::int32_t set(const std::string& name, std::uint32_t steps);

 private:
  /// Null without a bus.
  sd_bus* connected();
  /// It may have been lost: after a failure the next call makes a new connection.
  void forgetBusAfter(int result);

  std::mutex mutex;
  std::unique_ptr<const SystemBusLibrary> library;
  SystemBusLibrary::Connection bus;
};

}  // namespace brivane
