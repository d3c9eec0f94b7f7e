#include "Machines/Desk/Machine/Accessibility.h"

namespace brivane {

bool DeskAccessibility::isTrusted() {
  return !faults.strikes("AccessibilityAccess.isTrusted") && hardware.isAccessibilityGranted();
}

bool DeskAccessibility::requestTrust() {
  if (faults.strikes("AccessibilityAccess.requestTrust")) return false;
  if (hardware.isAccessibilityGranted()) return true;
  ++prompts;
  hardware.tracer().note([] { return std::string("accessibility prompt"); });
  return false;
}

}  // namespace brivane
