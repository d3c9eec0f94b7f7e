#include "Machines/Linux/Advice.h"

#include <sstream>

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

std::string busRemedy(const BusTroubles::Trouble& trouble) {
  switch (trouble.kind) {
    case BusTrouble::notPermitted:
      return "You have no permission for /dev/i2c-*, so monitors can't be reached: install "
             "Brivane's "
             "udev rule or join the group i2c, then log in again. See docs/linux.md.";
    case BusTrouble::noBus:
      return "No I2C bus leads to the monitor on " + trouble.monitor +
             ": its driver, adapter or dock offers none. See docs/linux.md.";
    case BusTrouble::busy:
      return "Another program uses the I2C bus of the monitor on " + trouble.monitor +
             ": end it, and try again.";
    case BusTrouble::asleep:
      return "The monitor on " + trouble.monitor + " is on stand-by: wake it, and try again.";
    case BusTrouble::noAnswer:
      return "The monitor on " + trouble.monitor +
             " doesn't answer: switch on DDC/CI in its own menu, and try it without an adapter or "
             "dock. See docs/linux.md.";
  }
  return {};
}

/// The text behind the phrase; nothing without the phrase.
std::optional<std::string> behind(std::string_view phrase, std::string_view line) {
  const auto start = line.find(phrase);
  if (start == std::string_view::npos) return std::nullopt;
  return std::string(line.substr(start + phrase.size()));
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
  const auto trouble = missingAccess.buses.first();
  if (trouble && trouble->kind == BusTrouble::notPermitted) return busRemedy(*trouble);
  if (missingAccess.keymapsDenied) {
    return "brivane-hidutil has no permission to remap the keyboards' brightness keys: only root "
           "has it. See docs/linux.md.";
  }
  if (missingAccess.backlightDenied) {
    return "You have no permission to set the built-in panel's backlight: install Brivane's udev "
           "rule or join the group video, then log in again. See docs/linux.md.";
  }
  return trouble ? std::optional(busRemedy(*trouble)) : std::nullopt;
}

std::optional<std::string> insteadOfMacCommand(std::string_view line,
                                               const std::vector<ProcessID>& running) {
  if (const auto setting = behind("defaults write com.quorrel.brivane ", line)) {
    std::istringstream words(*setting);
    std::string key;
    std::string type;
    std::string value;
    words >> key >> type >> value;
    return "On Linux: brivane-defaults write " + key + " " + value;
  }
  if (!behind("launchctl bootout ", line) || running.empty()) return std::nullopt;
  return "On Linux: kill " + std::to_string(running.front());
}

}  // namespace brivane
