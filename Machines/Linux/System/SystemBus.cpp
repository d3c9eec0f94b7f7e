#include "Machines/Linux/System/SystemBus.h"

#include <cstdint>

#include "Machines/Linux/System/SharedLibrary.h"

namespace brivane {

SystemBusLibrary::SystemBusLibrary() : loaded(load()) {}

bool SystemBusLibrary::load() {
  const SharedLibrary systemd("libsystemd.so.0");
  return systemd.find("sd_bus_open_system", openSystem) &&
         systemd.find("sd_bus_set_method_call_timeout", setTimeout) &&
         systemd.find("sd_bus_flush_close_unref", close) &&
         systemd.find("sd_bus_match_signal", matchSignal) &&
         systemd.find("sd_bus_process", process) && systemd.find("sd_bus_get_fd", descriptor) &&
         systemd.find("sd_bus_flush", flush) && systemd.find("sd_bus_message_read", readMessage) &&
         systemd.find("sd_bus_call_method", callMethod) &&
         systemd.find("sd_bus_call_method_async", callMethodLater) &&
         systemd.find("sd_bus_get_property_trivial", getProperty);
}

SystemBusLibrary::Connection SystemBusLibrary::connect() const {
  sd_bus* opened = nullptr;
  if (openSystem(&opened) < 0) return nullptr;
  Connection connection(opened, close);
  constexpr std::uint64_t timeoutMicroseconds = 1'000'000;
  setTimeout(opened, timeoutMicroseconds);
  return connection;
}

}  // namespace brivane
