#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The system's key mapping tool with these arguments, as far as Brivane uses it:
/// "property --get UserKeyMapping" prints the mapping, "property --set <JSON>" replaces it.
/// Anything else, and JSON that is no mapping, ends with status 1 and prints nothing.
FinishedProcess runHIDUtil(const std::vector<std::string>& arguments, DeskHardware& hardware);

/// The mapping as the tool prints it: "(null)" when it is empty, else a list in parentheses of
/// blocks in braces, each with its destination on one line and its source on the next, in decimal.
std::string printedHIDMapping(const HIDMapping& mapping);

}  // namespace brivane
