#include "Machines/Linux/SessionBacklight.h"

#include <cerrno>

namespace brivane {

bool SessionBacklight::canSet() {
  const std::scoped_lock lock(mutex);
  sd_bus* const connection = connected();
  if (connection == nullptr) return false;
  int isActive = 0;
  const int result =
      library->getProperty(connection, logind::service, logind::sessionPath,
                           logind::sessionInterface, "Active", nullptr, 'b', &isActive);
  forgetBusAfter(result);
  return result >= 0 && isActive != 0;
}

std::int32_t SessionBacklight::set(const std::string& name, std::uint32_t steps) {
  const std::scoped_lock lock(mutex);
  sd_bus* const connection = connected();
  if (connection == nullptr) return EACCES;
  const int result = library->callMethod(connection, logind::service, logind::sessionPath,
                                         logind::sessionInterface, "SetBrightness", nullptr,
                                         nullptr, "ssu", "backlight", name.c_str(), steps);
  forgetBusAfter(result);
  return result >= 0 ? 0 : -result;
}

void SessionBacklight::forgetBusAfter(int result) {
  if (result < 0) bus.reset();
}

sd_bus* SessionBacklight::connected() {
  if (!library) library = std::make_unique<const MessageBusLibrary>();
  if (!library->isLoaded()) return nullptr;
  if (!bus) bus = library->connectToSystem();
  return bus.get();
}

}  // namespace brivane
