#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The grant, which whoever plays the user gives and takes back on the hardware.
class DeskAccessibility : public AccessibilityAccess {
 public:
  DeskAccessibility(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults) {}

  bool isTrusted() override;
  bool requestTrust() override;

  /// How often the system has asked the user on this program's behalf.
  int promptCount() const { return prompts; }

 private:
  DeskHardware& hardware;
  Faults& faults;
  int prompts = 0;
};

}  // namespace brivane
