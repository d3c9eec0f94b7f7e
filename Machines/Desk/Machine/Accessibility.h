#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"
#include "Machines/Desk/Hardware/DeskSystem.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The grant; the simulated user gives and revokes it on the hardware.
class DeskAccessibility : public AccessibilityAccess {
 public:
  DeskAccessibility(DeskSystem& deskSystem, Faults& machineFaults, const Tracer& hardwareTracer)
      : system(deskSystem), faults(machineFaults), tracer(hardwareTracer) {}

  bool isTrusted() override;
  bool requestTrust() override;

  /// How often the system has prompted the user for this program.
  int promptCount() const { return prompts; }

 private:
  DeskSystem& system;
  Faults& faults;
  const Tracer& tracer;
  int prompts = 0;
};

}  // namespace brivane
