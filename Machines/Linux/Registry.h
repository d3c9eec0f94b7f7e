#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/IORegistry.h"
#include "Machines/Linux/Connectors.h"

namespace brivane {

/// The I2C channel of one connector.
struct I2CChannel {
  /// The kernel's name of the connector.
  std::string connector;
  /// N of "/dev/i2c-N".
  unsigned bus = 0;
};

/// A snapshot of one iteration; nothing is read later.
struct LinuxRegistryEntry : RegistryEntry {
  std::optional<std::string> className() const override { return kind; }
  std::optional<std::string> name() const override { return title; }
  std::optional<PropertyValue> property(std::string_view key) const override;
  std::shared_ptr<const RegistryEntry> parent() const override { return above; }

  std::string kind;
  std::string title;
  PropertyValue::Dictionary properties;
  std::shared_ptr<const LinuxRegistryEntry> above;
  /// Audio/video service proxies only.
  std::optional<I2CChannel> channel;
};

/// The kernel's connectors as registry entries: below the root a controller for each connector with
/// a panel ("disp-card0-00093-HDMI-A-1"), below it the panel, if its EDID can be read, and the
/// service proxy, if it has an I2C bus.
///
/// The name holds the kernel's number so that names sort as window systems list outputs; nothing
/// else tells identical monitors apart.
class LinuxIORegistry : public IORegistry {
 public:
  explicit LinuxIORegistry(const Connectors& machineConnectors) : connectors(machineConnectors) {}

  std::unique_ptr<RegistryIterator> allServices() override;

 private:
  const Connectors& connectors;
};

}  // namespace brivane
