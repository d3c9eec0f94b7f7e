#pragma once

#include <memory>
#include <vector>

#include "BrivaneCore/Seams/IORegistry.h"
#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk's registry of hardware: below the root, for each display, a display controller named
/// after the port with the panel some steps below it, and beside it the channel with the AV proxy.
class DeskRegistry : public IORegistry {
 public:
  /// The faults are shared because entries may outlive the registry.
  DeskRegistry(const AttachedDisplays& attachedDisplays, std::shared_ptr<Faults> machineFaults)
      : displays(attachedDisplays), faults(std::move(machineFaults)) {}

  std::unique_ptr<RegistryIterator> allServices() override;

  /// The display of an AV proxy's entry, if a service can be created for it.
  static std::optional<DisplayID> displayOfProxy(const RegistryEntry& entry);

 private:
  const AttachedDisplays& displays;
  const std::shared_ptr<Faults> faults;
};

}  // namespace brivane
