#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/Resources.h"
#include "Machines/Common/Files/ResourceFolder.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// The resource bundles as the build made them, beside the running test program.
class BuiltResources : public Resources {
 public:
  explicit BuiltResources(std::string language) : languages{std::move(language)} {}

  std::optional<std::string> read(const std::string& bundle, const std::string& path) override {
    const auto file = resourceFolder() / bundle / path;
    if (!std::filesystem::exists(file)) return std::nullopt;
    return TemporaryFolder::read(file);
  }

  std::vector<std::string> preferredLanguages() override { return languages; }

 private:
  const std::vector<std::string> languages;
};

}  // namespace brivane
