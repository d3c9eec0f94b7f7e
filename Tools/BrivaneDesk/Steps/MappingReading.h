#pragma once

#include <string_view>

#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// A HID mapping's effect on the brightness keys: "empty"; "relay" when all six sources that
/// Brivane takes go to one function key for up and another for down; "foreign" when none of them is
/// mapped but other keys are; else "partial".
std::string_view readMapping(const HIDMapping& mapping);

}  // namespace brivane
