#include "Machines/Linux/SessionBacklight.h"

#include <algorithm>
#include <cerrno>

namespace brivane {

bool SessionBacklight::canSet() {
  int isActive = 0;
  const int result = make([&](sd_bus* connection) {
    return library->getProperty(connection, logind::service, logind::sessionPath,
                                logind::sessionInterface, "Active", nullptr, 'b', &isActive);
  });
  return result >= 0 && isActive != 0;
}

std::int32_t SessionBacklight::set(const std::string& name, std::uint32_t steps) {
  const int result = make([&](sd_bus* connection) {
    return library->callMethod(connection, logind::service, logind::sessionPath,
                               logind::sessionInterface, "SetBrightness", nullptr, nullptr, "ssu",
                               "backlight", name.c_str(), steps);
  });
  return std::max(-result, 0);
}

int SessionBacklight::make(const Call& call) {
  const std::scoped_lock lock(mutex);
  const bool isFirst = bus == nullptr;
  const int result = makeOnce(call);
  // A connection from an earlier call may have ended with its bus.
  return bus || isFirst ? result : makeOnce(call);
}

int SessionBacklight::makeOnce(const Call& call) {
  if (!library) library = std::make_unique<const MessageBusLibrary>();
  if (!bus) connect();
  if (!bus) return -EACCES;
  const int result = call(bus.get());
  if (library->isOpen(bus.get()) <= 0) bus.reset();
  return result;
}

void SessionBacklight::connect() {
  if (library->isLoaded()) bus = library->connectToSystem();
  // A key press waits for the answer.
  constexpr std::uint64_t patienceMicroseconds = 1'000'000;
  if (bus) library->setTimeout(bus.get(), patienceMicroseconds);
}

}  // namespace brivane
