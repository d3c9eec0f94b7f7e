#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The grant; the simulated user gives and revokes it on the hardware.
class DeskAccessibility : public AccessibilityAccess {
 public:
  DeskAccessibility(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults) {}

  bool isTrusted() override;
  bool requestTrust() override;

  /// How often the system has prompted the user for this program.
  int promptCount() const { return prompts; }

 private:
  DeskHardware& hardware;
  Faults& faults;
  int prompts = 0;
};

}  // namespace brivane
