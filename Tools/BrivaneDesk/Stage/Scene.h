#pragma once

#include <functional>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Keyboard.h"

namespace brivane {

/// Where a hardware step takes place: in a scenario, or on a desk shared with other processes.
class Scene {
 public:
  virtual ~Scene() = default;

  virtual DeskHardware& hardware() = 0;
  virtual DeskKeyboard& keyboard() = 0;

  /// The time by the hardware's clock.
  virtual Microseconds now() const = 0;
  /// Runs `action` after `delay`, before any step of that moment.
  virtual void later(Microseconds delay, std::function<void()> action) = 0;
  /// Whether the condition on the keys holds. When another process handles keys, waits up to 2 s
  /// for it to handle the keys forwarded before.
  virtual bool isSoOfKeys(const std::function<bool()>& condition) { return condition(); }
};

}  // namespace brivane
