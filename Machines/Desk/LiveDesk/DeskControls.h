#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Frame/LiveControls.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

// The controls in the windows of a simulated monitor and of the machine. Main thread.

namespace brivane {

/// The strip under a monitor's picture: its buttons, mood, sleep and headroom. Empty for displays
/// that are not plugged in. The controls keep references to `hardware` and `runtime`.
LiveControls monitorControls(DeskHardware& hardware, DisplayID display, const Runtime& runtime);

/// The machine's panel: displays to plug in, sleep, appearance, Accessibility grant.
LiveControls machineControls(DeskHardware& hardware, const Runtime& runtime);

}  // namespace brivane
