#pragma once

#include <memory>

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"

namespace brivane {

/// Whether the environment names a screen: an X server, or a Qt platform of the user's choice.
bool hasScreen();

/// Loads the module with the Qt frame and opens it on the machine. Null, with one line in the
/// machine's log, when Qt is missing or no screen can be opened. `desk` has a simulated machine's
/// monitors as windows; null for a real machine.
std::unique_ptr<Frame> openQtFrame(ResidentMachine& machine,
                                   std::shared_ptr<AppearanceSource> appearance,
                                   SharedWindowSystem* windowSystem,
                                   std::shared_ptr<LiveDesk> desk);

}  // namespace brivane
