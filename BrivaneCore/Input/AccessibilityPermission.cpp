#include "BrivaneCore/Input/AccessibilityPermission.h"

#include <string_view>

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

bool AccessibilityPermission::isGranted() const {
  return machine.accessibility().isTrusted();
}

bool AccessibilityPermission::requestIfNeeded() {
  return machine.accessibility().requestTrust();
}

bool AccessibilityPermission::requestOncePerBuild() {
  UserDefaults& defaults = machine.defaults();
  const std::string identity = buildIdentity();
  const auto prompted = defaults.object(promptedBuildKey);
  if (prompted && prompted->text() && *prompted->text() == identity) return isGranted();
  // Stored first: a program that dies while the system asks shall not ask again.
  defaults.set(promptedBuildKey, {identity});
  return requestIfNeeded();
}

void AccessibilityPermission::openSettingsPane() {
  machine.session().openURL(
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
}

std::string AccessibilityPermission::buildIdentity() const {
  Session& session = machine.session();
  const std::string name = executableName(session);
  return name + "@" + shortestFloatingPoint(session.modificationSeconds(name).value_or(0));
}

}  // namespace brivane
