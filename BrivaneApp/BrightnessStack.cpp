#include "BrivaneApp/BrightnessStack.h"

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Gamma/GammaBaselineStore.h"

namespace brivane {

BrightnessStack::BrightnessStack(Machine& machine)
    : appleDisplays(std::make_shared<AppleDisplayBackend>(machine.symbols(), machine.displays())),
      registry(std::make_shared<DisplayRegistry>(machine.displays(), machine.ioRegistry(),
                                                 machine.symbols(), machine.runtime())),
      store(machine.defaults(), machine.displays()),
      controller(std::make_shared<BrightnessController>(
          machine, appleDisplays, registry, store,
          std::make_shared<GammaBaselineStore>(
              std::make_shared<CoreGraphicsGammaTableIO>(machine.gammaTables())))) {}

}  // namespace brivane
