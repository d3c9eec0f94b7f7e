#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brivane {

/// The folder of the program's resource bundles, built or installed: "../share/brivane" from the
/// executable's folder.
std::filesystem::path resourceFolder();

/// The bytes of a file of at most 16 MiB in a bundle within `folder`; nothing when it can't be
/// read.
std::optional<std::string> readResource(const std::filesystem::path& folder,
                                        const std::string& bundle, const std::string& path);

}  // namespace brivane
