#include "Machines/Linux/SessionBacklight.h"

#include <cerrno>

namespace brivane {

bool SessionBacklight::canSet() {
  const std::scoped_lock lock(mutex);
  sd_bus* const connection = connected();
  int isActive = 0;
  return connection != nullptr &&
         library->getProperty(connection, logind::service, logind::sessionPath,
                              logind::sessionInterface, "Active", nullptr, 'b', &isActive) >= 0 &&
         isActive != 0;
}

std::int32_t SessionBacklight::set(const std::string& name, std::uint32_t steps) {
  const std::scoped_lock lock(mutex);
  sd_bus* const connection = connected();
  if (connection == nullptr) return EACCES;
  const int result = library->callMethod(connection, logind::service, logind::sessionPath,
                                         logind::sessionInterface, "SetBrightness", nullptr,
                                         nullptr, "ssu", "backlight", name.c_str(), steps);
  if (result >= 0) return 0;
  // After a lost connection the next call makes a new one.
  bus.reset();
  return -result;
}

sd_bus* SessionBacklight::connected() {
  if (!library) library = std::make_unique<const SystemBusLibrary>();
  if (!library->isLoaded()) return nullptr;
  if (!bus) bus = library->connect();
  return bus.get();
}

}  // namespace brivane
