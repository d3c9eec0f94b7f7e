#pragma once

#include "BrivaneCore/Seams/EventTaps.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// One program's taps. Without the Accessibility grant no tap can be created, and existing ones
/// receive no events.
class DeskEventTaps : public EventTaps {
 public:
  DeskEventTaps(DeskHardware& deskHardware, std::shared_ptr<Faults> machineFaults)
      : hardware(deskHardware), faults(std::move(machineFaults)) {}

  std::unique_ptr<EventTap> createTap(Handler handler) override;

  /// What the system does when a program ends: its taps receive no more events.
  void releaseAll() { *isRunning = false; }

 private:
  DeskHardware& hardware;
  const std::shared_ptr<Faults> faults;
  const std::shared_ptr<bool> isRunning = std::make_shared<bool>(true);
};

}  // namespace brivane
