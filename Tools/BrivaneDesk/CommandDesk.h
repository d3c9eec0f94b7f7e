#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Machines/Desk/Machine/Machine.h"

namespace brivane {

/// The words after a command that is for a desk which others may be using.
struct DeskWords {
  std::filesystem::path desk;
  std::vector<std::string> rest;
};

/// Takes the desk's file from the front of the words, if it is there: a word that no step begins
/// with and that ends in ".json" or names a file. Else it is the file in the environment variable
/// BRIVANE_DESK, else the one that `./run` uses.
DeskWords deskWords(std::vector<std::string> words);

/// The desk, or in one line why it can't be used.
std::variant<std::unique_ptr<DeskMachine>, std::string> openLiveDesk(
    const std::filesystem::path& file);

}  // namespace brivane
