#pragma once

#include <cstdint>
#include <functional>

#include "BrivaneCore/Input/HotkeyBinding.h"

namespace brivane {

/// Registered hotkeys, each under a number of its own. Main thread. Dropping it unregisters all.
class HotkeyRegistering {
 public:
  /// Receives the number of the hotkey.
  using Callback = std::function<void(std::uint32_t id)>;

  virtual ~HotkeyRegistering() = default;

  /// Replaces both callbacks, which get every press and release from now on.
  virtual void installHandler(Callback pressed, Callback released) = 0;

  /// False when the system refuses, most often because another program has the combination.
  virtual bool registerHotkey(const HotkeyBinding& binding, std::uint32_t id) = 0;

  virtual bool isRegistered(std::uint32_t id) const = 0;

  /// Unregisters all hotkeys and removes both callbacks.
  virtual void unregisterAll() = 0;
};

}  // namespace brivane
