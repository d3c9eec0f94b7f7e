#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// One entry of the registry of attached hardware, seen in the service plane. Holding the pointer
/// holds the entry; an entry stays readable after its hardware is gone.
class RegistryEntry {
 public:
  virtual ~RegistryEntry() = default;

  /// Nothing when the registry refuses, here and below.
  virtual std::optional<std::string> className() const = 0;
  virtual std::optional<std::string> name() const = 0;
  virtual std::optional<PropertyValue> property(std::string_view key) const = 0;

  /// The entry directly above; null at the root and when the registry refuses.
  virtual std::shared_ptr<const RegistryEntry> parent() const = 0;
};

/// One pass over the entries.
class RegistryIterator {
 public:
  virtual ~RegistryIterator() = default;

  /// The next entry, parents before their children; null at the end.
  virtual std::shared_ptr<const RegistryEntry> next() = 0;

  /// Whether the pass has ended early because the registry changed; then only a new pass gives the
  /// other entries. False where a pass goes on as the registry was at its beginning.
  virtual bool wasCutShort() const { return false; }
};

/// The registry of attached hardware. Main and DDC queue, one pass at a time.
class IORegistry {
 public:
  virtual ~IORegistry() = default;

  /// A pass over every entry of the service plane from the root down; null when the registry
  /// refuses.
  virtual std::unique_ptr<RegistryIterator> allServices() = 0;
};

}  // namespace brivane
