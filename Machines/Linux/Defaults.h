#pragma once

#include <filesystem>
#include <string>

namespace brivane {

/// The file of a settings domain: "$XDG_CONFIG_HOME/brivane/<domain>.json", where the variable
/// counts only as an absolute path; else the same below the user's ".config".
std::filesystem::path defaultsFile(const std::string& domain);

}  // namespace brivane
