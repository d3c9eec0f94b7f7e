#pragma once

#include <memory>
#include <string>
#include <variant>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// A machine, and how the resident program is shown on it.
struct PickedMachine {
  std::unique_ptr<ResidentMachine> machine;
  FrameOpener openFrame;
};

/// The machine, or one line for the user that says why there is none.
using MachineOrProblem = std::variant<PickedMachine, std::string>;

/// The desk that the environment variable BRIVANE_DESK names by its file, or, when that is unset or
/// empty, the real machine; a Mac has no desks and is always itself. Call once, from main.
MachineOrProblem pickMachine();

}  // namespace brivane
