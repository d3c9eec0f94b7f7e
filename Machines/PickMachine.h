#pragma once

#include <memory>
#include <string>
#include <variant>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// The machine, or one line for the user that says why there is none.
using MachineOrProblem = std::variant<std::unique_ptr<Machine>, std::string>;

/// The desk that the environment variable BRIVANE_DESK names by its file, or, when that is unset or
/// empty, the real machine. Call once, from main.
MachineOrProblem pickMachine();

}  // namespace brivane
