#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Desk/DeskHardware.h"

// What a person can read and do at a simulated monitor and at the machine itself, for a toolkit to
// show. Each is made anew whenever the hardware has changed. Main thread.

namespace brivane {

struct LiveButton {
  std::string title;
  std::function<void()> press;
};

/// One of several, such as a monitor's mood.
struct LiveChoice {
  std::string title;
  std::vector<std::string> options;
  std::size_t chosen = 0;
  std::function<void(std::size_t option)> choose;
};

using LiveControl = std::variant<LiveButton, LiveChoice>;

struct LiveControls {
  /// The window's title.
  std::string title;
  /// Lines to read.
  std::vector<std::string> status;
  std::vector<LiveControl> controls;
};

/// The strip under a monitor's picture: its buttons, mood, sleep and headroom. Empty for displays
/// that are not plugged in. The controls use hardware and runtime when they are used.
LiveControls monitorControls(DeskHardware& hardware, DisplayID display, const Runtime& runtime);

/// The machine's panel: what can be plugged in, sleep, the appearance and the grant.
LiveControls machineControls(DeskHardware& hardware, const Runtime& runtime);

}  // namespace brivane
