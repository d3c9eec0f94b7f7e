#pragma once

#include <vector>

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

// Which displays are plugged in, what can change about them, and its JSON.

namespace brivane {

/// What can change about a display, except firmware, gamma table and panel level.
struct AttachedDisplay {
  DisplayID identifier = 0;
  Rect frame;
  std::string port;
  ScreenPresence screen = ScreenPresence::numbered;
  /// See `DisplayDescription`.
  double headroom = 1.0;
  DisplayID number = 0;
  RegistryEntries entries = RegistryEntries::all;

  bool operator==(const AttachedDisplay&) const = default;
};

struct UnpluggedDisplay {
  /// As it was when it was unplugged.
  AttachedDisplay display;
  /// Its index among the displays that were plugged in.
  std::size_t place = 0;

  bool operator==(const UnpluggedDisplay&) const = default;
};

/// A display is in at most one of the lists.
struct DisplaysState {
  /// In the window system's order.
  std::vector<AttachedDisplay> attached;
  std::vector<UnpluggedDisplay> unplugged;

  bool operator==(const DisplaysState&) const = default;
};

/// All of them plugged in.
DisplaysState initialDisplays(const std::vector<DisplayDescription>& descriptions);

JsonValue toJson(const DisplaysState& state);
void fromJson(const JsonItem& item, DisplaysState& state);

}  // namespace brivane
