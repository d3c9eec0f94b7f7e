#pragma once

#include <functional>
#include <string>

#include "BrivaneCore/Input/CarbonHotkeyCoordinator.h"
#include "BrivaneCore/Input/HotkeySource.h"
#include "BrivaneCore/Input/MediaKeyEventTap.h"
#include "BrivaneCore/Input/RelayHotkeySwitching.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// The whole input path: the event tap, the hotkeys and the ramp of held keys. Dropping it stops
/// it. Main thread.
class HotkeyManager : public RelayHotkeySwitching {
 public:
  HotkeyManager(ResidentMachine& machine, AdjustmentHandler adjustmentHandler);
  HotkeyManager(const HotkeyManager&) = delete;
  HotkeyManager& operator=(const HotkeyManager&) = delete;
  ~HotkeyManager() override;

  /// Starts every part that the system allows, and logs which.
  void start();

  /// Whether the tap runs now. Once it does, the plain F1 and F2 hotkeys are given back.
  bool startEventTap();

  /// Takes the tap out, ends a ramp and registers the plain F1 and F2 hotkeys again.
  void stopEventTap();

  void stop();

  /// Registers the hotkeys as the settings have them now.
  void reloadBindings();

  /// While suspended, the user's combinations are ordinary keys, which the editor can capture.
  /// Stopping ends the suspension.
  void suspendUserBindings(bool suspended);

  bool setRelayHotkeysEnabled(bool enabled) override;

  /// Whether the system has refused both of the user's combinations.
  bool areUserBindingsRefused() const;
  /// Whether the keyboard's brightness keys reach the program, by the tap or by the relay.
  bool hasBrightnessKeys() const;

  /// Whether both relay keys are registered.
  bool relayHotkeysRegistered() const;
  bool isRelayActive() const { return coordinator.isRelayActive; }
  bool isEventTapActive() const { return eventTap.isRunning(); }

  /// The program's own menu opens or closes. Hotkeys act at once while it is open, unless the
  /// settings leave them to the system.
  void setMenuOpen(bool isOpen);

  /// The system has disabled the event tap, which is enabled again. Called while an event waits, so
  /// no more than a task may be queued here.
  std::function<void()> onTapDisabled;

 private:
  void registerAnew(bool tapActive);
  bool isFunctionKeyRegistered() const;
  std::string summary(bool tapActive) const;
  std::string relayState() const;

  const AdjustmentHandler handler;
  MediaKeyEventTap eventTap;
  CarbonHotkeyCoordinator coordinator;

  Hotkeys& systemHotkeys;
  UserDefaults& defaults;
  SystemLog& log;
  LivenessAnchor anchor;
};

}  // namespace brivane
