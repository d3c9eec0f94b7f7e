#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads a desk file's "firmware".
void readFirmware(const JsonItem& item, FirmwareDescription& firmware);

/// The mood as desk files and state files name it.
void readMood(JsonSection& section, MonitorMood& mood);
std::string_view moodName(MonitorMood mood);

}  // namespace brivane
