#pragma once

#include "BrivaneCore/Seams/SymbolLoader.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/DDC/Bus.h"

namespace brivane {

/// The AV-service calls, also without an I2C bus: device files may appear later, and functions are
/// asked for once. The display-services calls if a backlight exists.
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
