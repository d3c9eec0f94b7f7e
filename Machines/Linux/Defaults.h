#pragma once

#include <filesystem>
#include <string>

namespace brivane {

/// The file of a settings domain: "brivane/<domain>.json" in `userSettingsFolder()`.
std::filesystem::path defaultsFile(const std::string& domain);

}  // namespace brivane
