#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// The desk that the file describes; or what is wrong with it, in one line that names the file and
/// the place inside it. docs/desk.md describes the format.
std::variant<DeskDescription, std::string> readDeskFile(const std::filesystem::path& file);

/// The same for a text; `fileName` is how errors call it.
std::variant<DeskDescription, std::string> parseDesk(std::string_view text,
                                                     std::string_view fileName);

}  // namespace brivane
