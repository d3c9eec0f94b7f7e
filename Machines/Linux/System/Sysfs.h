#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brivane {

/// sysfs attributes. Their reported size is useless, so they are read to their end.

/// An attribute's bytes; nothing when it can't be read.
std::optional<std::string> readAttribute(const std::filesystem::path& file);

/// An attribute's text without its final line break; nothing when it can't be read.
std::optional<std::string> readTextAttribute(const std::filesystem::path& file);

/// The attribute as a whole number of 0 or more; nothing for any other content.
std::optional<std::int64_t> readNumberAttribute(const std::filesystem::path& file);

/// Writes an attribute in one call. Returns 0 or the system's error number.
int writeAttribute(const std::filesystem::path& file, std::string_view text);

/// The names in a folder, sorted; empty when there is no such folder or it can't be read.
std::vector<std::string> namesIn(const std::filesystem::path& folder);

/// The device that a link in a class folder leads to, or the nearest device above with that
/// attribute; nothing without one.
std::optional<std::filesystem::path> deviceWith(std::string_view attribute,
                                                const std::filesystem::path& classLink);

/// The number behind `prefix`, if `name` is exactly that ("i2c-5" with "i2c-"); else nothing.
std::optional<unsigned> numberBehind(std::string_view prefix, std::string_view name);

}  // namespace brivane
