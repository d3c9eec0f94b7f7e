#pragma once

#include <memory>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"
#include "BrivaneCore/Gamma/DisplayDimming.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"

namespace brivane {

/// Moves a display to a level of the joint scale, as a slider asks for it. Main thread; a hardware
/// write blocks it.
struct AbsoluteLevelSetter {
  DDCDisplayCoordinator& coordinator;
  std::shared_ptr<DisplayDimming> dimmer;
  std::shared_ptr<DisplayBrighteningFactory> brighteningFactory;
  BrightnessSettings settings;

  /// `level` limited to the levels on offer; whether the display took it. For a software effect the
  /// answer is the effect's, whether or not the hardware moved.
  bool setLevel(Percent level, DisplayID display) const;
};

}  // namespace brivane
