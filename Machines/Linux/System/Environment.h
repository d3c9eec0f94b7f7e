#pragma once

#include <filesystem>
#include <string>

namespace brivane {

/// The variable's value; empty when it is unset.
std::string environmentText(const char* variable);

/// The variable's path; empty when it is unset or relative.
std::filesystem::path environmentPath(const char* variable);

/// The user's home folder: HOME, else from the user database.
std::filesystem::path userHomeFolder();

/// "$XDG_CONFIG_HOME" if it is an absolute path, else ".config" in the home folder.
std::filesystem::path userSettingsFolder();

/// "$XDG_STATE_HOME" if it is an absolute path, else ".local/state" in the home folder.
std::filesystem::path userStateFolder();

}  // namespace brivane
