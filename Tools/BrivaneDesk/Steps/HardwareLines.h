#pragma once

#include <map>
#include <string>

#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The hardware's current state, by part: "monitor 2" → "level 40, 12 writes, mood silent". Parts
/// are named as in the desk's trace.
std::map<std::string, std::string> hardwareLines(DeskHardware& hardware);

}  // namespace brivane
