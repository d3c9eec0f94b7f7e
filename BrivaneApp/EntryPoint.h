#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// Whether the arguments, program path included, have a switch of a command-line mode. These modes
/// always end with exit status 0.
bool isCommandLineMode(const std::vector<std::string>& arguments);

/// Runs the program on a machine: a command-line mode, or the resident program, which alone opens a
/// frame and runs until the application ends. Returns the exit status. `arguments` includes the
/// program's path.
int runBrivane(const std::vector<std::string>& arguments, ResidentMachine& machine,
               const FrameOpener& openFrame, std::ostream& standardOutput,
               std::ostream& standardError);

}  // namespace brivane
