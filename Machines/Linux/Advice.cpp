#include "Machines/Linux/Advice.h"

namespace brivane {
namespace {

std::string displayRemedy(const GraphicsSession& session) {
  if (session.hasDisplayName) {
    return "check DISPLAY and XAUTHORITY, and that it is your own session's server";
  }
  if (session.isWayland) return "this session has Wayland only, log in to an X11 session instead";
  return "start Brivane in an X11 session, or set DISPLAY (and XAUTHORITY) to that session's "
         "server";
}

}  // namespace

std::optional<std::string> adviceFor(const GraphicsSession& session,
                                     const MissingAccess& missingAccess) {
  if (session.displayProblem) {
    return "Brivane sees no displays because " + *session.displayProblem + ": " +
           displayRemedy(session) + ".";
  }
  if (missingAccess.noBuses) {
    return "There is no /dev/i2c-* to reach monitors through: run \"sudo modprobe i2c-dev\"; if "
           "that "
           "changes nothing, the graphics driver offers no I2C bus. See docs/linux.md.";
  }
  if (missingAccess.busDenied) {
    return "You have no permission for /dev/i2c-*, so monitors can't be reached: install Brivane's "
           "udev rule or join the group i2c, then log in again. See docs/linux.md.";
  }
  if (missingAccess.keymapsDenied) {
    return "brivane-hidutil has no permission to remap the keyboards' brightness keys: only root "
           "has it. See docs/linux.md.";
  }
  if (missingAccess.backlightDenied) {
    return "You have no permission to set the built-in panel's backlight: install Brivane's udev "
           "rule or join the group video, then log in again. See docs/linux.md.";
  }
  return std::nullopt;
}

}  // namespace brivane
