#pragma once

#include "BrivaneCore/Seams/EventTapPort.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// One program's taps. They need the Accessibility grant: without it none is made, and none that
/// was made sees anything.
class DeskEventTaps : public EventTapPort {
 public:
  DeskEventTaps(DeskHardware& deskHardware, std::shared_ptr<Faults> machineFaults)
      : hardware(deskHardware), faults(std::move(machineFaults)) {}

  std::unique_ptr<EventTap> createTap(Handler handler) override;

  /// What the system does when a program ends: its taps see nothing any more.
  void releaseAll() { *isRunning = false; }

 private:
  DeskHardware& hardware;
  const std::shared_ptr<Faults> faults;
  const std::shared_ptr<bool> isRunning = std::make_shared<bool>(true);
};

}  // namespace brivane
