#pragma once

#include <memory>
#include <string>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Common/Frame/HostedMainQueue.h"
#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"

// What the program and the module with the Qt frame have in common. The toolkit lies in a library
// of its own, which only the resident start loads; nothing here needs it.

namespace brivane {

/// What the frame is opened with, and why it was not.
struct QtFrameRequest {
  ResidentMachine& machine;
  /// The main queue of the machine's Runtime.
  HostedMainQueue& mainQueue;
  /// Null: light or dark is what the desktop says.
  std::shared_ptr<AppearanceSource> appearance;
  /// One clause for the user; filled in when there is no frame.
  std::string problem;
  /// Null: the machine has no use for the keys that the frame's windows are sent.
  SharedWindowSystem* windowSystem = nullptr;
  /// A machine whose monitors are windows; null: its screens are the real ones.
  std::shared_ptr<LiveDesk> desk = nullptr;
};

/// The one function that the module exports, under the name below. Call it once, on the main
/// thread. The caller owns the frame; the module stays loaded until the process ends. Null: nothing
/// can be shown, see `problem`.
using OpenQtFrameFunction = Frame* (*)(QtFrameRequest& request);
inline constexpr auto openQtFrameName = "brivaneOpenQtFrame";

/// Where the module lies, seen from the folder of the program.
inline constexpr auto qtModulePath = "../lib/brivane/brivane-qt.so";

}  // namespace brivane
