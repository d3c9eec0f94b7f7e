#pragma once

#include <memory>

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"

namespace brivane {

/// Whether the environment speaks of a screen: an X server, or a Qt platform of the user's choice.
bool hasScreen();

/// Loads the module with the Qt frame and opens it on the machine. Null, with one line in the
/// machine's log, when Qt is missing or no screen is reached. The monitors of a simulated machine
/// are windows; for a real one `desk` is null.
std::unique_ptr<Frame> openQtFrame(ResidentMachine& machine,
                                   std::shared_ptr<AppearanceSource> appearance,
                                   SharedWindowSystem* windowSystem,
                                   std::shared_ptr<LiveDesk> desk);

}  // namespace brivane
