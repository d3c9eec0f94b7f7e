#pragma once

#include <optional>
#include <string>

#include "Machines/Linux/MissingAccess.h"

namespace brivane {

/// What a session says about its window system.
struct GraphicsSession {
  /// Why no X server could be asked, as a clause without a full stop; nothing when none was needed
  /// or all is well.
  std::optional<std::string> displayProblem;
  /// DISPLAY names a server.
  bool hasDisplayName = false;
  /// A Wayland compositor runs the session.
  bool isWayland = false;
};

/// One line for the user: the most important thing that is missing, and what to do about it.
/// Nothing when nothing is missing.
std::optional<std::string> adviceFor(const GraphicsSession& session,
                                     const MissingAccess& missingAccess);

}  // namespace brivane
