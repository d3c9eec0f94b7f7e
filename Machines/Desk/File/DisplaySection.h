#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads a desk file's "displays".
void readDisplays(const JsonItem& item, std::vector<DisplayDescription>& displays);

/// Reads the object {"x": ..., "y": ...}; both are required.
void readPoint(const JsonItem& item, Point& point);

// Members of a display, in desk files and state files.

void readFrame(const JsonItem& item, Rect& frame);
void readPresence(JsonSection& section, ScreenPresence& presence);
std::string_view presenceName(ScreenPresence presence);
void readHeadroom(JsonSection& section, double& headroom);
/// Under the key "entries", which is in a display's registry in desk files.
void readRegistryEntries(JsonSection& section, RegistryEntries& entries);
std::string_view registryEntriesName(RegistryEntries entries);
/// Nothing for other words.
std::optional<RegistryEntries> registryEntriesOf(std::string_view name);

}  // namespace brivane
