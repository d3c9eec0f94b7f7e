#pragma once

#include <memory>
#include <string>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Common/Frame/HostedMainQueue.h"
#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"

// The interface of the program and the module with the Qt frame, which only the resident program
// loads; nothing here needs Qt.

namespace brivane {

/// What the frame is opened with, and the problem if it can't be opened.
struct QtFrameRequest {
  ResidentMachine& machine;
  /// The main queue of the machine's Runtime.
  HostedMainQueue& mainQueue;
  /// Null: light or dark as on the desktop.
  std::shared_ptr<AppearanceSource> appearance;
  /// One clause for the user; set when there is no frame.
  std::string problem;
  /// Null when the machine doesn't use the windows' keys.
  SharedWindowSystem* windowSystem = nullptr;
  /// A simulated machine, whose monitors are shown as windows; null for a real machine.
  std::shared_ptr<LiveDesk> desk = nullptr;
};

/// The module's only exported function, by the name below. Call it once, on the main thread. The
/// caller owns the frame; the module stays loaded until the process ends. Null when nothing can be
/// shown, see `problem`.
using OpenQtFrameFunction = Frame* (*)(QtFrameRequest& request);
inline constexpr auto openQtFrameName = "brivaneOpenQtFrame";

}  // namespace brivane
