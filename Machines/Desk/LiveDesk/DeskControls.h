#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Frame/LiveControls.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

// What a person can read and do at a simulated monitor and at the machine itself. Main thread.

namespace brivane {

/// The strip under a monitor's picture: its buttons, mood, sleep and headroom. Empty for displays
/// that are not plugged in. The controls use hardware and runtime when they are used.
LiveControls monitorControls(DeskHardware& hardware, DisplayID display, const Runtime& runtime);

/// The machine's panel: what can be plugged in, sleep, the appearance and the grant.
LiveControls machineControls(DeskHardware& hardware, const Runtime& runtime);

}  // namespace brivane
