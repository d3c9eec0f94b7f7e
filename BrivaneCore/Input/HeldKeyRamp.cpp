// Time is measured at each tick and not counted in ticks, so that the speed of a sweep doesn't
// depend on how punctual the main thread is.

#include "BrivaneCore/Input/HeldKeyRamp.h"

#include <utility>

namespace brivane {
namespace {

constexpr double initialDelaySeconds = 0.35;

}  // namespace

HeldKeyRamp::HeldKeyRamp(Runtime& programRuntime, Keyboard& heldKeyboard, TickCallback tickCallback)
    : onTick(std::move(tickCallback)), runtime(programRuntime), keyboard(heldKeyboard) {}

HeldKeyRamp::~HeldKeyRamp() {
  anchor.kill();
  stop();
}

void HeldKeyRamp::begin(BrightnessDirection direction, HotkeySource source) {
  stop();
  repeatTimer = runtime.after(fromSeconds(initialDelaySeconds),
                              [this, direction, source, watch = anchor.watch()] {
                                if (!watch.isAlive()) return;
                                state = {direction, source, wantedProfile(), 0, runtime.now()};
                                scheduleTicker();
                              });
}

void HeldKeyRamp::stop() {
  runtime.cancel(repeatTimer);
  repeatTimer = 0;
  state.reset();
}

RampEngine::RampProfile HeldKeyRamp::wantedProfile() {
  const bool isShiftDown = (keyboard.modifierFlags() & modifierFlag::shift) != 0;
  return isShiftDown ? RampEngine::fine : RampEngine::coarse;
}

void HeldKeyRamp::scheduleTicker() {
  if (!state) return;
  runtime.cancel(repeatTimer);
  repeatTimer =
      runtime.every(fromSeconds(state->profile.repeatInterval()), [this, watch = anchor.watch()] {
        if (watch.isAlive()) tick();
      });
}

void HeldKeyRamp::tick() {
  if (!state) return;
  const auto profile = wantedProfile();
  const Instant now = runtime.now();
  if (profile != state->profile) {
    state->profile = profile;
    state->carry = 0;
    state->lastTick = now;
    scheduleTicker();
    return;
  }
  const auto [points, carry] =
      RampEngine::rampDelta(secondsBetween(state->lastTick, now), state->carry, profile);
  state->lastTick = now;
  state->carry = carry;
  if (points < 1) return;
  const bool isUp = state->direction == BrightnessDirection::up;
  onTick({.delta = isUp ? points : -points, .snapToStep = false}, state->source);
}

}  // namespace brivane
