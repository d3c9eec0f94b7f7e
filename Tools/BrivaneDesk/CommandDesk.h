#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Machines/Desk/Machine/Machine.h"

namespace brivane {

/// The arguments of a command on a desk that other processes may be using.
struct DeskWords {
  std::filesystem::path desk;
  std::vector<std::string> rest;
};

/// Takes the desk's file from the front of the words, if the first word begins no step and ends in
/// ".json" or names a file. Else the file is the environment variable BRIVANE_DESK's, else
/// `./run`'s.
DeskWords deskWords(std::vector<std::string> words);

/// The desk, or why it can't be used, in one line.
std::variant<std::unique_ptr<DeskMachine>, std::string> openLiveDesk(
    const std::filesystem::path& file);

}  // namespace brivane
