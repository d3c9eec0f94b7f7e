#pragma once

#include <filesystem>
#include <string>

namespace brivane {

/// The variable's value; empty when it is unset.
std::string environmentText(const char* variable);

/// The variable's path; empty when it is unset or relative.
std::filesystem::path environmentPath(const char* variable);

/// The user's home folder as HOME says, else as the system's list of users does.
std::filesystem::path userHomeFolder();

/// "$XDG_CONFIG_HOME", where the variable counts only as an absolute path; else the user's
/// ".config".
std::filesystem::path userSettingsFolder();

}  // namespace brivane
