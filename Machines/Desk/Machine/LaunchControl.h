#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The tool on the desk, see `LaunchAgent`; its one domain is "gui/501".
FinishedProcess runLaunchControl(const std::vector<std::string>& arguments, DeskHardware& hardware);

}  // namespace brivane
