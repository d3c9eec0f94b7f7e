#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SymbolLoader.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk's two libraries; their functions act on its hardware. A status other than 0 is always
/// 1.
class DeskSymbols : public SymbolLoader {
 public:
  DeskSymbols(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime)
      : hardware(deskHardware), faults(machineFaults), runtime(machineRuntime) {}

  LibraryHandle open(std::string_view path, int mode) override;
  Symbol find(LibraryHandle library, std::string_view name) override;

 private:
  Symbol avServiceSymbol(std::string_view name);
  Symbol displayServicesSymbol(std::string_view name);

  DeskHardware& hardware;
  Faults& faults;
  Runtime& runtime;
};

}  // namespace brivane
