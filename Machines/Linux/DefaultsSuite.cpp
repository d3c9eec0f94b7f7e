#include "Machines/Linux/DefaultsSuite.h"

#include <filesystem>
#include <string>

#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Linux/System/Defaults.h"

namespace brivane {

std::optional<PropertyValue::Dictionary> LinuxDefaultsSuite::persistentDomain(
    std::string_view domain) {
  const auto file = defaultsFile(std::string(domain));
  std::error_code unreadable;  // counts as missing
  if (!std::filesystem::exists(file, unreadable)) return std::nullopt;
  return JsonFileDefaults(file, runtime, log, JsonFileDefaults::Durability::unsynced).contents();
}

}  // namespace brivane
