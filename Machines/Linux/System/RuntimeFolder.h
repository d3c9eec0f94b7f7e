#pragma once

#include <filesystem>
#include <optional>

namespace brivane {

/// The folder for files that must not outlive the session or a restart: "$XDG_RUNTIME_DIR/brivane"
/// when that variable names a folder of this user's own, else "/run/brivane" for the superuser and
/// "/run/user/<user>/brivane" for others. Nothing without such a place. The folder itself may not
/// exist yet.
std::optional<std::filesystem::path> runtimeFolder();

/// Creates the folder, accessible to this user only, unless it exists. Returns whether it is now a
/// folder of this user's own, not a link.
bool makeRuntimeFolder(const std::filesystem::path& folder);

}  // namespace brivane
