#pragma once

#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Input/RelayHotkeySwitching.h"
#include "BrivaneCore/KeyRelay/KeyMappingStore.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Policy/BuiltInPanelDriving.h"
#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// Takes the keyboard's brightness keys over from the operating system and gives them back: key
/// mapping, relay hotkeys and built-in panel together, all or nothing. Main thread; every operation
/// but `stop` blocks for the key mapping's calls.
class SystemBrightnessKeyController : public Stoppable {
 public:
  SystemBrightnessKeyController(ResidentMachine& machine, BuiltInPanelDriving& brightnessController,
                                KeyMappingStore& keyMappingStore, RelayHotkeySwitching& relay);
  ~SystemBrightnessKeyController() override;
  SystemBrightnessKeyController(const SystemBrightnessKeyController&) = delete;
  SystemBrightnessKeyController& operator=(const SystemBrightnessKeyController&) = delete;

  /// Stores the setting and acts on it. If any part can't be switched on, all is undone, logged and
  /// stored as off.
  void setEnabled(bool enabled);

  /// Applies the key mapping again and changes nothing else.
  void applyMapping();

  /// Ends the checks of each minute and of new keyboards; the mapping stays.
  void stop() override;

 private:
  void switchOn();
  void switchOff();
  void undo();
  void release();
  void store(bool enabled);
  void startRelayVerification();
  void keyboardAttached();
  void verifyRelay();

  BuiltInPanelDriving& controller;
  KeyMappingStore& keyMapping;
  RelayHotkeySwitching& hotkeys;
  TimerID relayVerifyTimer = 0;
  TimerID keyboardTimer = 0;

  Runtime& runtime;
  SystemNotifications& notifications;
  UserDefaults& defaults;
  SystemLog& log;
  const RelaySettings settings;
  Observation keyboards;
};

}  // namespace brivane
