#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/Resources.h"

namespace brivane {

/// The bundles in the program's resource folder, and the languages of the session's locale
/// variables.
class LinuxResources : public Resources {
 public:
  explicit LinuxResources(std::filesystem::path bundleFolder) : folder(std::move(bundleFolder)) {}

  std::optional<std::string> read(const std::string& bundle, const std::string& path) override;
  std::vector<std::string> preferredLanguages() override;

 private:
  const std::filesystem::path folder;
};

}  // namespace brivane
