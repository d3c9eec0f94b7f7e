#pragma once

#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The desk's own appearance, light or dark. Main thread.
class AppearanceOfDesk : public AppearanceSource {
 public:
  explicit AppearanceOfDesk(DeskHardware& deskHardware) : hardware(deskHardware) {}

  Appearance appearance() override {
    return hardware.system.appearance() == DeskAppearance::dark ? Appearance::dark
                                                                : Appearance::light;
  }

  Observation observe(Task handler) override {
    return hardware.events.observe<HardwareNotice>(
        [task = std::move(handler)](HardwareNotice notice) {
          if (notice == HardwareNotice::appearance) task();
        });
  }

 private:
  DeskHardware& hardware;
};

}  // namespace brivane
