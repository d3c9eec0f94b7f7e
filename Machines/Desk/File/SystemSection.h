#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads what a desk file says beside its displays.
void readSystem(JsonSection& section, DeskDescription& desk);

/// Reads a list of HID mapping entries, as desk files and state files hold it.
void readHIDMapping(const JsonItem& item, HIDMapping& mapping);

/// An appearance's name in desk files and state files.
void readAppearance(const JsonItem& item, DeskAppearance& appearance);
std::string_view appearanceName(DeskAppearance appearance);

}  // namespace brivane
