#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/Applications.h"
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

/// What to type on Linux in the place of the Mac's command in this line of a report, for the
/// running programs; nothing when the line names no command for which there is one.
std::optional<std::string> insteadOfMacCommand(std::string_view line,
                                               const std::vector<ProcessID>& running);

}  // namespace brivane
