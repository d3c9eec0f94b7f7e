#pragma once

#include <map>
#include <string>

#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// What the hardware is like now, by its parts: "monitor 2" → "level 40, 12 writes, mood silent".
/// The names of the parts are those of the desk's trace.
std::map<std::string, std::string> hardwareLines(DeskHardware& hardware);

}  // namespace brivane
