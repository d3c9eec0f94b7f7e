#pragma once

#include "Machines/Common/SharedWindowSystem.h"
#include "Machines/Linux/EventTaps.h"
#include "Machines/Linux/Hotkeys.h"

namespace brivane {

/// What the frame's windows tell hotkeys and taps.
class LinuxWindowSystem : public SharedWindowSystem {
 public:
  /// Both must outlive this.
  LinuxWindowSystem(LinuxHotkeys& grabbedHotkeys, LinuxEventTaps& grabbedBrightnessKeys)
      : hotkeys(grabbedHotkeys), brightnessKeys(grabbedBrightnessKeys) {}

  bool take(const WindowKey& key) override { return hotkeys.take(key) || brightnessKeys.take(key); }
  void keyboardIsBack() override {
    hotkeys.keyboardIsBack();
    brightnessKeys.keyboardIsBack();
  }

 private:
  LinuxHotkeys& hotkeys;
  LinuxEventTaps& brightnessKeys;
};

}  // namespace brivane
