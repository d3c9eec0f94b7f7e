#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "Machines/Desk/Machine/Machine.h"

namespace brivane {

/// The desk that the file describes, in real time, with its state in the folder "<file>.state" and
/// its log on standard error; or the file's first error, in one line.
std::variant<std::unique_ptr<DeskMachine>, std::string> openDesk(const std::filesystem::path& file);

}  // namespace brivane
