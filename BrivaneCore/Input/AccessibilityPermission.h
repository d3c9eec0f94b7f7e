#pragma once

#include <string>

#include "BrivaneCore/Seams/AccessibilityAccess.h"
#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// The user's grant without which the keyboard's own brightness keys can't be caught. Main thread.
class AccessibilityPermission {
 public:
  /// Enough for `isGranted` and `requestIfNeeded`; the other operations are programming errors
  /// without a resident machine, and abort.
  explicit AccessibilityPermission(AccessibilityAccess& accessibilityAccess);
  explicit AccessibilityPermission(ResidentMachine& residentMachine);

  bool isGranted() const;

  /// Whether it is granted; the system asks the user when it isn't.
  bool requestIfNeeded();

  /// Whether it is granted. The system asks the user at most once for each build of the program,
  /// told by the executable's path and when it was last modified.
  bool requestOncePerBuild();

  /// Opens the system's settings where the user gives the grant.
  void openSettingsPane();

 private:
  ResidentMachine& resident();
  std::string buildIdentity();

  AccessibilityAccess& access;
  ResidentMachine* const machine = nullptr;
};

}  // namespace brivane
