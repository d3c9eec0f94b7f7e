#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Input/HotkeySource.h"
#include "BrivaneCore/Input/RampEngine.h"
#include "BrivaneCore/Seams/Keyboard.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Sweeps the level while a hotkey is held, since hotkeys don't repeat. After 0.35 seconds it ticks
/// every 0.06 seconds and gives the step for the time since the last one; slower and finer while
/// Shift is down. The first step, that of the press, is the caller's. Main thread.
class HeldKeyRamp {
 public:
  /// Receives each step: signed, never snapping.
  using TickCallback = std::function<void(const Adjustment&, HotkeySource)>;

  HeldKeyRamp(Runtime& programRuntime, Keyboard& heldKeyboard, TickCallback tickCallback);
  HeldKeyRamp(const HeldKeyRamp&) = delete;
  HeldKeyRamp& operator=(const HeldKeyRamp&) = delete;
  ~HeldKeyRamp();

  /// The key has just been pressed and its first step is done. Ends any ramp in progress.
  void begin(BrightnessDirection direction, HotkeySource source);

  /// Ends any ramp.
  void stop();

 private:
  struct State {
    BrightnessDirection direction;
    HotkeySource source;
    RampEngine::RampProfile profile;
    double carry;
    Instant lastTick;
  };

  RampEngine::RampProfile wantedProfile();
  void scheduleTicker();
  void tick();

  /// The initial delay or the ticker, never both; 0 when idle.
  TimerID repeatTimer = 0;
  std::optional<State> state;
  const TickCallback onTick;

  Runtime& runtime;
  Keyboard& keyboard;
  LivenessAnchor anchor;
};

}  // namespace brivane
