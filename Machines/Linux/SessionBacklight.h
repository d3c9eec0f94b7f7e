#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Machines/Linux/System/MessageBus.h"

namespace brivane {

/// Sets backlights through logind, which permits it to the active session. Library and bus are
/// opened on first use, the bus again after it was lost. Any thread.
class SessionBacklight {
 public:
  /// Whether this process is in the active session.
  bool canSet();

  /// `name` as in "/sys/class/backlight". Returns 0 or the system's error number.
  std::int32_t set(const std::string& name, std::uint32_t steps);

 private:
  /// Returns 0 or more, or a negative error number.
  using Call = std::function<int(sd_bus* connection)>;

  int make(const Call& call);
  int makeOnce(const Call& call);
  void connect();

  std::mutex mutex;
  std::unique_ptr<const MessageBusLibrary> library;
  MessageBusLibrary::Connection bus;
};

}  // namespace brivane
