#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// The file of the program's settings, or why there is none, in one line.
using FileOrProblem = std::variant<std::filesystem::path, std::string>;

/// Reads, changes or removes hidden settings, as `words` say. `findFile` is called once the words
/// are understood. Prints values to `out`, and what is wrong, in one line, to `errors`. A file that
/// can't be read stays as it is.
///
/// The exit status: 0 when it was done, 1 when the setting is not set, the settings can't be read
/// or written, or both relay keys would be the same, 64 when the words can't be understood.
int changeDefaults(const std::vector<std::string>& words,
                   const std::function<FileOrProblem()>& findFile, Runtime& runtime,
                   std::ostream& out, std::ostream& errors);

/// What `--help` prints.
std::string defaultsHelp();

}  // namespace brivane
