#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"

namespace brivane {

/// The user's grant without which the keyboard's own brightness keys can't be caught. Main thread.
class AccessibilityPermission {
 public:
  explicit AccessibilityPermission(AccessibilityAccess& accessibilityAccess);

  bool isGranted() const;

 private:
  AccessibilityAccess& access;
};

}  // namespace brivane
