#pragma once

#include <functional>
#include <optional>

#include "BrivaneCore/Input/HotkeySource.h"
#include "BrivaneCore/Input/RampEngine.h"
#include "BrivaneCore/Seams/Keyboard.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Sweeps the level while a hotkey is held, because a hotkey tells only that it went down and that
/// it went up. After 0.35 seconds it ticks, every 0.06 seconds, and gives the steps that the time
/// makes; slower and finer while Shift is down. The press's own first step is not its business.
/// Main thread.
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
