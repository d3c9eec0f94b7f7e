#pragma once

#include <optional>
#include <string>

#include "Machines/Linux/DDC/MissingAccess.h"

namespace brivane {

/// The session's window system.
struct GraphicsSession {
  /// Why no X server could be used, as a clause without a full stop; nothing without a problem.
  std::optional<std::string> displayProblem;
  /// DISPLAY is set.
  bool hasDisplayName = false;
  /// The session is Wayland.
  bool isWayland = false;
};

/// One line for the user: the most important missing access and its remedy. Nothing when nothing is
/// missing.
std::optional<std::string> adviceFor(const GraphicsSession& session,
                                     const MissingAccess& missingAccess);

}  // namespace brivane
