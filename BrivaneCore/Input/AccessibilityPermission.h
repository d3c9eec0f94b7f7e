#pragma once

#include <string>

#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// The user's grant without which the keyboard's own brightness keys can't be caught. Main thread.
class AccessibilityPermission {
 public:
  explicit AccessibilityPermission(ResidentMachine& residentMachine) : machine(residentMachine) {}

  bool isGranted() const;

  /// Whether it is granted; the system asks the user when it isn't.
  bool requestIfNeeded();

  /// Whether it is granted. The system asks the user at most once for each build of the program,
  /// identified by the executable's path and its time of modification.
  bool requestOncePerBuild();

  /// Opens the system's settings where the user gives the grant.
  void openSettingsPane();

 private:
  std::string buildIdentity() const;

  ResidentMachine& machine;
};

}  // namespace brivane
