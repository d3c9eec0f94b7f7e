#pragma once

#include <filesystem>
#include <optional>

namespace brivane {

/// The folder for what must not outlive a session or a restart of the computer:
/// "$XDG_RUNTIME_DIR/brivane" when that variable names a folder of this user's own, else
/// "/run/brivane" for the superuser and "/run/user/<user>/brivane" for others. Nothing when there
/// is no such place. The folder itself may not exist yet.
std::optional<std::filesystem::path> runtimeFolder();

/// Makes the folder, for this user's eyes only, unless it exists. Whether it is a folder of this
/// user's own now, and no link to one.
bool makeRuntimeFolder(const std::filesystem::path& folder);

}  // namespace brivane
