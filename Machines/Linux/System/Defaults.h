#pragma once

#include <filesystem>
#include <string>

namespace brivane {

/// The program's own settings domain.
inline constexpr auto ownDomain = "com.quorrel.brivane";

/// The file of a settings domain: "brivane/<domain>.json" in `userSettingsFolder()`.
std::filesystem::path defaultsFile(const std::string& domain);

}  // namespace brivane
