#pragma once

#include "BrivaneCore/Seams/Resources.h"

namespace brivane {

/// The resource bundles in the main bundle, and the languages of the system settings.
class MacResources : public Resources {
 public:
  std::optional<std::string> read(const std::string& bundle, const std::string& path) override;
  std::vector<std::string> preferredLanguages() override;
};

}  // namespace brivane
