#include "BrivaneApp/RemoteController.h"

#include <algorithm>

#include "BrivaneCore/Policy/CursorRouter.h"

namespace brivane {
namespace {

using Reason = RemoteFailure::Reason;

/// The whole joint scale, whatever the settings offer of it.
constexpr PercentRange jointScale{-100, 200};

/// Such as "3 (Halden H27), 4 (Norvik 24)".
std::string listed(const std::vector<DisplayTarget>& targets) {
  std::string text;
  for (const DisplayTarget& target : targets) {
    if (!text.empty()) text += ", ";
    text += std::to_string(target.displayID) + " (" + target.name + ")";
  }
  return text;
}

RemoteFailure noSuchDisplay(const std::string& display, const std::vector<DisplayTarget>& targets) {
  if (targets.empty()) return {Reason::noSuchDisplay, "There is no display."};
  return {Reason::noSuchDisplay,
          "There is no display \"" + display + "\"; there are " + listed(targets) + "."};
}

RemoteFailure ambiguousDisplay(const std::string& name, const std::vector<DisplayTarget>& named) {
  return {Reason::ambiguousDisplay, "Several displays are named \"" + name +
                                        "\"; say which by its number: " + listed(named) + "."};
}

RemoteFailure silence(const DisplayTarget& target) {
  return {Reason::notAnswering, target.name + " doesn't answer; Brivane goes on asking it."};
}

RemoteFailure refusedLevel(const DisplayTarget& target) {
  return {Reason::notAnswering, target.name + " didn't take the level."};
}

}  // namespace

RemoteController::RemoteController(Machine& machine, BrightnessController& brightnessController,
                                   KeyPressCoordinator& keyPressCoordinator,
                                   StatusItemController& statusItemController,
                                   HotkeyEditor& programHotkeyEditor)
    : controller(brightnessController),
      keyPress(keyPressCoordinator),
      statusItem(statusItemController),
      hotkeyEditor(programHotkeyEditor),
      displays(machine.displays()),
      settings(machine.defaults()) {}

RemoteLevel RemoteController::pressUp() {
  return press(BrightnessDirection::up);
}

RemoteLevel RemoteController::pressDown() {
  return press(BrightnessDirection::down);
}

RemoteLevel RemoteController::press(BrightnessDirection direction) {
  using Kind = AdjustOutcome::Kind;
  const auto outcome = keyPress.press({.delta = delta(direction), .snapToStep = true});
  if (outcome.kind == Kind::handled) return outcome.level;
  const auto found = findUnderPointer();
  if (const auto* failure = std::get_if<RemoteFailure>(&found)) return *failure;
  const auto& target = std::get<DisplayTarget>(found);
  return outcome.kind == Kind::connecting ? silence(target) : whyPassedThrough(target);
}

RemoteLevel RemoteController::set(Percent level, const std::string& display) {
  if (level < jointScale.lower || level > jointScale.upper) {
    return RemoteFailure{Reason::levelOutOfRange, "A level is a whole number from -100 to 200."};
  }
  const auto found = find(display);
  if (const auto* failure = std::get_if<RemoteFailure>(&found)) return *failure;
  const auto& target = std::get<DisplayTarget>(found);
  // The menu has a slider only for a display whose level is known.
  auto before = levelOf(target);
  if (std::holds_alternative<RemoteFailure>(before)) return before;
  if (!controller.setLevel(level, target.displayID)) return refusedLevel(target);
  statusItem.refresh();
  return levelOf(target);
}

RemoteLevel RemoteController::get(const std::string& display) {
  const auto found = find(display);
  if (const auto* failure = std::get_if<RemoteFailure>(&found)) return *failure;
  return levelOf(std::get<DisplayTarget>(found));
}

std::vector<RemoteDisplay> RemoteController::list() {
  const auto pointed = CursorRouter(displays).displayUnderCursor();
  const auto range = settings.levelRange();
  std::vector<RemoteDisplay> listed;
  for (const DisplayTarget& target : controller.refreshTargets()) {
    listed.push_back({target.displayID, target.name, target.displayID == pointed,
                      controller.level(target.displayID), range.lower, range.upper});
  }
  return listed;
}

void RemoteController::showMenu() {
  statusItem.openMenu();
}

void RemoteController::showHotkeyEditor() {
  hotkeyEditor.show();
}

RemoteController::Found RemoteController::find(const std::string& display) {
  if (display.empty()) return findUnderPointer();
  const auto targets = controller.refreshTargets();
  std::vector<DisplayTarget> named;
  for (const DisplayTarget& target : targets) {
    if (std::to_string(target.displayID) == display) return target;
    if (target.name == display) named.push_back(target);
  }
  if (named.empty()) return noSuchDisplay(display, targets);
  if (named.size() > 1) return ambiguousDisplay(display, named);
  return named.front();
}

RemoteController::Found RemoteController::findUnderPointer() {
  const auto pointed = CursorRouter(displays).displayUnderCursor();
  const auto targets = controller.refreshTargets();
  const auto match = std::ranges::find(targets, pointed, [](const DisplayTarget& target) {
    return std::optional(target.displayID);
  });
  if (match != targets.end()) return *match;
  return RemoteFailure{Reason::noSuchDisplay, "The pointer is on no display."};
}

RemoteLevel RemoteController::levelOf(const DisplayTarget& target) const {
  if (const auto level = controller.level(target.displayID)) return *level;
  if (target.isBuiltIn) {
    return RemoteFailure{Reason::notDriven, target.name + " is controlled by the system alone."};
  }
  if (controller.retryStatus(target.displayID).isRetrying) return silence(target);
  return RemoteFailure{Reason::notDriven, target.name + " gives no level."};
}

/// A display whose level is known doesn't take a press when it is the built-in panel, whose keys
/// may be the system's, or refuses the level.
RemoteFailure RemoteController::whyPassedThrough(const DisplayTarget& target) const {
  const auto level = levelOf(target);
  if (const auto* failure = std::get_if<RemoteFailure>(&level)) return *failure;
  if (!target.isBuiltIn) return refusedLevel(target);
  return {Reason::notDriven, "Brivane leaves the keys of " + target.name +
                                 " to the system, unless \"Use System "
                                 "Brightness Keys\" is on; \"set\" sets it."};
}

}  // namespace brivane
