#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// The desk that the file describes, or the first error in one line: file, place in it, what is
/// wrong. docs/desk.md describes the format.
std::variant<DeskDescription, std::string> readDeskFile(const std::filesystem::path& file);

/// The same for a text; errors name it `fileName`.
std::variant<DeskDescription, std::string> parseDesk(std::string_view text,
                                                     std::string_view fileName);

}  // namespace brivane
