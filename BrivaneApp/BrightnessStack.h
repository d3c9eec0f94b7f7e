#pragma once

#include <memory>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "BrivaneCore/Levels/BrightnessStore.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// The objects that read and set levels, in the resident program and the command-line modes. The
/// machine must outlive them. Main thread.
struct BrightnessStack {
  explicit BrightnessStack(Machine& machine);

  const std::shared_ptr<AppleDisplayBackend> appleDisplays;
  const std::shared_ptr<DisplayRegistry> registry;
  BrightnessStore store;
  const std::shared_ptr<BrightnessController> controller;
};

}  // namespace brivane
