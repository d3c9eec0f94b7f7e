#include "BrivaneCore/Input/AccessibilityPermission.h"

namespace brivane {

AccessibilityPermission::AccessibilityPermission(AccessibilityAccess& accessibilityAccess)
    : access(accessibilityAccess) {}

bool AccessibilityPermission::isGranted() const {
  return access.isTrusted();
}

}  // namespace brivane
