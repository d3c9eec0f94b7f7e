#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The launch-agent tool, see `LaunchAgent`; its only domain is "gui/501".
FinishedProcess runLaunchControl(const std::vector<std::string>& arguments, DeskHardware& hardware);

}  // namespace brivane
