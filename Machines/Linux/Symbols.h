#pragma once

#include "BrivaneCore/Seams/SymbolLoader.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/DDC/Bus.h"

namespace brivane {

/// The AV-service calls, and the display-services calls over the backlight; also while there is no
/// I2C bus or no backlight: they may appear later, and functions are asked for once.
class LinuxSymbolLoader : public SymbolLoader {
 public:
  LinuxSymbolLoader(const LinuxBus& machineBus, const LinuxBacklight& machineBacklight)
      : bus(machineBus), backlight(machineBacklight) {}

  LibraryHandle open(std::string_view path, int mode) override;
  Symbol find(LibraryHandle library, std::string_view name) override;

 private:
  Symbol findAVService(std::string_view name) const;
  Symbol findDisplayServices(std::string_view name) const;

  const LinuxBus& bus;
  const LinuxBacklight& backlight;
};

}  // namespace brivane
