#include "BrivaneCore/Input/AccessibilityPermission.h"

#include <string_view>

#include "BrivaneCore/Support/Fatal.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

constexpr std::string_view promptedBuildKey = "PromptedForAccessibilityBuild";

std::string executableName(Session& session) {
  if (const auto path = session.executablePath()) return *path;
  const auto arguments = session.arguments();
  return arguments.empty() ? "unknown" : arguments.front();
}

}  // namespace

AccessibilityPermission::AccessibilityPermission(AccessibilityAccess& accessibilityAccess)
    : access(accessibilityAccess) {}

AccessibilityPermission::AccessibilityPermission(ResidentMachine& residentMachine)
    : access(residentMachine.accessibility()), machine(&residentMachine) {}

bool AccessibilityPermission::isGranted() const {
  return access.isTrusted();
}

bool AccessibilityPermission::requestIfNeeded() {
  return access.requestTrust();
}

bool AccessibilityPermission::requestOncePerBuild() {
  UserDefaults& defaults = resident().defaults();
  const std::string identity = buildIdentity();
  const auto prompted = defaults.object(promptedBuildKey);
  if (prompted && prompted->text() && *prompted->text() == identity) return isGranted();
  // Stored first: a program that dies while the system asks shall not ask again.
  defaults.set(promptedBuildKey, {identity});
  return requestIfNeeded();
}

void AccessibilityPermission::openSettingsPane() {
  resident().session().openURL(
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
}

ResidentMachine& AccessibilityPermission::resident() {
  if (!machine) fatal("the Accessibility grant is asked for on a machine that has no session");
  return *machine;
}

std::string AccessibilityPermission::buildIdentity() {
  Session& session = resident().session();
  const std::string name = executableName(session);
  return name + "@" + shortestFloatingPoint(session.modificationSeconds(name).value_or(0));
}

}  // namespace brivane
