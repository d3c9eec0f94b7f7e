#pragma once

#include <functional>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Keyboard.h"

namespace brivane {

/// Where what a step says happens to the hardware: in a scenario, or on a desk that others use.
class Scene {
 public:
  virtual ~Scene() = default;

  virtual DeskHardware& hardware() = 0;
  virtual DeskKeyboard& keyboard() = 0;

  /// By the clock of the hardware.
  virtual Microseconds now() const = 0;
  /// Carries `action` out then, before any step of that moment.
  virtual void later(Microseconds delay, std::function<void()> action) = 0;
  /// Whether it is so of the keys. Where they are another process's affair, that process gets the
  /// time to take what was handed to it before.
  virtual bool isSoOfKeys(const std::function<bool()>& condition) { return condition(); }
};

}  // namespace brivane
