#include "Machines/Desk/Machine/Accessibility.h"

namespace brivane {

bool DeskAccessibility::isTrusted() {
  return !faults.strikes("AccessibilityAccess.isTrusted") && system.isAccessibilityGranted();
}

bool DeskAccessibility::requestTrust() {
  if (faults.strikes("AccessibilityAccess.requestTrust")) return false;
  if (system.isAccessibilityGranted()) return true;
  ++prompts;
  tracer.note([] { return std::string("accessibility prompt"); });
  return false;
}

}  // namespace brivane
