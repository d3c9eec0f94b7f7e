#pragma once

#include <memory>

#include "BrivaneCore/Seams/IORegistry.h"
#include "Machines/Mac/CoreFoundation/IOObject.h"

namespace brivane {

/// An entry of the I/O registry.
class MacRegistryEntry : public RegistryEntry {
 public:
  explicit MacRegistryEntry(IOObject ownedEntry) : entry(std::move(ownedEntry)) {}

  std::optional<std::string> className() const override;
  std::optional<std::string> name() const override;
  std::optional<PropertyValue> property(std::string_view key) const override;
  std::shared_ptr<const RegistryEntry> parent() const override;

  /// Borrowed: valid as long as this entry is.
  io_registry_entry_t object() const { return entry.get(); }

 private:
  const IOObject entry;
};

/// The I/O registry's service plane.
class MacIORegistry : public IORegistry {
 public:
  std::unique_ptr<RegistryIterator> allServices() override;
};

}  // namespace brivane
