#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "BrivaneCore/Input/HeldKeyRamp.h"
#include "BrivaneCore/Input/HotkeyRegistering.h"
#include "BrivaneCore/Input/HotkeySource.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Decides which hotkeys there are, makes each press an adjustment, and sweeps the level while a
/// key is held. Main thread.
class CarbonHotkeyCoordinator {
 public:
  CarbonHotkeyCoordinator(ResidentMachine& machine,
                          std::unique_ptr<HotkeyRegistering> hotkeyRegistrar,
                          AdjustmentHandler adjustmentHandler);
  CarbonHotkeyCoordinator(const CarbonHotkeyCoordinator&) = delete;
  CarbonHotkeyCoordinator& operator=(const CarbonHotkeyCoordinator&) = delete;
  ~CarbonHotkeyCoordinator() = default;

  /// Registers the hotkeys that the settings, the relay and the event tap call for, without those
  /// that the system refuses. The caller has unregistered the former ones. A ramp in progress goes
  /// on and ends with its key, even if the system reports no release.
  void registerHotkeys(bool tapActive);

  void handlePress(std::uint32_t id);
  void handleRelease(std::uint32_t id);

  const AdjustmentHandler handler;
  HeldKeyRamp ramp;
  const std::unique_ptr<HotkeyRegistering> registrar;
  /// Whether the relay's keys are to be registered.
  bool isRelayActive = false;
  /// Whether the user's bindings stay unregistered, whatever the settings say.
  bool areUserBindingsSuspended = false;

 private:
  void installHandler();
  void registerHotkey(const HotkeyBinding& binding, std::uint32_t id);
  void registerUserBindings();
  void registerRelayKeys();
  void rampTicked(const Adjustment& adjustment, HotkeySource source);

  /// By the number of the hotkey.
  std::map<std::uint32_t, std::uint32_t> keyCodes;
  /// Of the last press.
  std::optional<std::uint32_t> pressedKey;
  /// The ramp ends once this key is up, since its release may never be reported.
  std::optional<std::uint32_t> watchedKey;

  UserDefaults& defaults;
  Keyboard& keyboard;
  SystemLog& log;
  LivenessAnchor anchor;
};

}  // namespace brivane
