#include "Machines/Desk/Machine/Resources.h"

#include "Machines/Common/Files/ResourceFolder.h"

namespace brivane {

std::optional<std::string> DeskResources::read(const std::string& bundle, const std::string& path) {
  if (faults.strikes("Resources.read")) return std::nullopt;
  const auto& missing = desk.missingResources;
  if (missing.contains(bundle) || missing.contains(bundle + "/" + path)) return std::nullopt;
  if (folder.empty()) return std::nullopt;
  return readResource(folder, bundle, path);
}

std::vector<std::string> DeskResources::preferredLanguages() {
  if (faults.strikes("Resources.preferredLanguages")) return {};
  return {desk.language};
}

}  // namespace brivane
