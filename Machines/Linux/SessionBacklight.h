#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "Machines/Linux/System/MessageBus.h"

namespace brivane {

/// Sets backlights through logind, which permits it to the active session. Library and bus are
/// opened on first use. Any thread.
class SessionBacklight {
 public:
  /// Whether this process is in the active session.
  bool canSet();

  /// `name` as in "/sys/class/backlight". Returns 0 or the system's error number.
  std::int32_t set(const std::string& name, std::uint32_t steps);

 private:
  /// Null without a bus.
  sd_bus* connected();
  /// After a failure the next call connects again.
  void forgetBusAfter(int result);

  std::mutex mutex;
  std::unique_ptr<const MessageBusLibrary> library;
  MessageBusLibrary::Connection bus;
};

}  // namespace brivane
