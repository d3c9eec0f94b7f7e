#pragma once

#include <mutex>
#include <type_traits>

#include "Machines/Desk/Hardware/EventDelivery.h"
#include "Machines/Desk/Hardware/HardwareState.h"

namespace brivane {

/// What the programs on a desk share of the system beside displays and keys. Any thread; changes,
/// except by `setHIDMapping` and `setLaunchAgentEnabled`: main thread.
class DeskSystem {
 public:
  DeskSystem(const DeskDescription& desk, StateFolder* stateFolder, EventDelivery& eventDelivery,
             const Tracer& hardwareTracer);

  Point pointer() { return read(pointerState); }
  void movePointer(Point position);

  HIDMapping hidMapping() { return read(mapping); }
  void setHIDMapping(const HIDMapping& newMapping);

  LaunchState launchState() { return read(launch); }
  void setLaunchAgentEnabled(bool isEnabled);

  ToolsState tools() { return read(currentTools); }
  void setTools(const ToolsState& tools);

  bool isAsleep() { return read(power).isAsleep; }
  /// The state alone; `HardwareChanges` does what goes along with it.
  void setAsleep(bool isAsleep) { replace(power, {isAsleep}); }

  bool isAccessibilityGranted() { return read(grant).isGranted; }
  void setAccessibilityGranted(bool granted);

  DeskAppearance appearance() { return read(currentAppearance); }
  void setAppearance(DeskAppearance appearance);

 private:
  template <typename State>
  State read(StoredState<State>& state) {
    const std::lock_guard lock(mutex);
    return state.read();
  }
  template <typename State>
  void replace(StoredState<State>& state, const std::type_identity_t<State>& value) {
    const std::lock_guard lock(mutex);
    state.update([&](State& changed) {
      changed = value;
      return true;
    });
  }

  EventDelivery& events;
  const Tracer& tracer;
  std::mutex mutex;
  StoredState<Point> pointerState;
  StoredState<HIDMapping> mapping;
  StoredState<LaunchState> launch;
  StoredState<ToolsState> currentTools;
  StoredState<SystemState> power;
  StoredState<GrantState> grant;
  StoredState<DeskAppearance> currentAppearance;
};

}  // namespace brivane
