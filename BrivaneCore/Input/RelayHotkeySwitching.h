#pragma once

namespace brivane {

/// What the relay of the brightness keys needs of the input path.
class RelayHotkeySwitching {
 public:
  virtual ~RelayHotkeySwitching() = default;

  /// Main. Whether the relay's hotkeys are as asked for now: when enabling, that both of its keys
  /// are registered; switching off always succeeds.
  virtual bool setRelayHotkeysEnabled(bool enabled) = 0;
};

}  // namespace brivane
