#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads a desk file's members other than "displays".
void readSystem(JsonSection& section, DeskDescription& desk);

/// Reads a list of HID mapping entries, as desk files and state files hold it.
void readHIDMapping(const JsonItem& item, HIDMapping& mapping);

/// The tools, under the keys of desk files, in desk files and state files.
void readTools(JsonSection& section, ToolsState& tools);
std::string_view toolPresenceName(ToolPresence presence);
/// Nothing for other words.
std::optional<ToolPresence> toolPresenceOf(std::string_view name);

/// The appearance as desk files and state files name it.
void readAppearance(const JsonItem& item, DeskAppearance& appearance);
std::string_view appearanceName(DeskAppearance appearance);

}  // namespace brivane
