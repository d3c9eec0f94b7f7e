#pragma once

#include <memory>
#include <string>
#include <variant>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// A machine, and the opener of its frame.
struct PickedMachine {
  std::unique_ptr<ResidentMachine> machine;
  FrameOpener openFrame;
};

/// The machine, or one line for the user why there is none.
using MachineOrProblem = std::variant<PickedMachine, std::string>;

/// The desk whose file the environment variable BRIVANE_DESK names or, when that is unset or empty,
/// the real machine; on a Mac always the Mac. Call once, from main.
MachineOrProblem pickMachine();

}  // namespace brivane
