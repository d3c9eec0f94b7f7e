#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/DeskHardware.h"

namespace brivane {

/// The system's tool for launch agents with these arguments, as far as Brivane uses it: "enable"
/// and "disable" with a service, "bootstrap" with a domain and the agent's file, "print-disabled"
/// with a domain. The one domain is "gui/501". Anything else ends with status 64, loading what is
/// not there or disabled with 5.
FinishedProcess runLaunchControl(const std::vector<std::string>& arguments, DeskHardware& hardware);

}  // namespace brivane
