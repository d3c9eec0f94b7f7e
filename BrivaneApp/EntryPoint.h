#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// Whether the arguments (program path included) ask for a command-line mode. Those always end with
/// exit status 0.
bool isCommandLineMode(const std::vector<std::string>& arguments);

/// The whole program on a machine: a command-line mode, or the resident start, which alone opens a
/// frame and stays until the application ends. Returns the exit status. `arguments` is the whole
/// list, the program's path included.
int runBrivane(const std::vector<std::string>& arguments, ResidentMachine& machine,
               const FrameOpener& openFrame, std::ostream& standardOutput,
               std::ostream& standardError);

}  // namespace brivane
