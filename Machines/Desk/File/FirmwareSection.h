#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads a desk file's "firmware".
void readFirmware(const JsonItem& item, FirmwareDescription& firmware);

/// A mood's name in desk files and state files.
void readMood(JsonSection& section, MonitorMood& mood);
std::string_view moodName(MonitorMood mood);

}  // namespace brivane
