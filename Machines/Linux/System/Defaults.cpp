#include "Machines/Linux/System/Defaults.h"

#include "Machines/Linux/System/Environment.h"

namespace brivane {

std::filesystem::path defaultsFile(const std::string& domain) {
  return userSettingsFolder() / "brivane" / (domain + ".json");
}

}  // namespace brivane
