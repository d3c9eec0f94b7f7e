#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/IORegistry.h"
#include "Machines/Linux/DDC/BusSearch.h"
#include "Machines/Linux/DDC/OutputConnectors.h"

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

/// The online displays' connectors as registry entries: below the root a controller for each
/// display
/// ("disp-0000000065-card0-HDMI-A-1"), below the controller the panel, with the identity of the
/// display, and the service proxy, if the connector is certain and has an I2C bus. A display
/// without a certain connector has a panel, too, so that no other display's panel is taken for its
/// own.
///
/// The name holds the display's identifier, so that ports sort as displays do: nothing else tells
/// identical monitors apart.
class LinuxIORegistry : public IORegistry {
 public:
  /// The online displays at the time of the call.
  using OutputSource = std::function<DescribedOutputs()>;

  /// All must outlive this.
  LinuxIORegistry(const Connectors& machineConnectors, BusSearch& machineBusSearch,
                  BusTroubles& machineBusTroubles, OutputSource outputSource)
      : connectors(machineConnectors),
        busSearch(machineBusSearch),
        troubles(machineBusTroubles),
        describedOutputs(std::move(outputSource)) {}

  std::unique_ptr<RegistryIterator> allServices() override;

 private:
  void noteMissingBus(const std::string& monitor);

  const Connectors& connectors;
  BusSearch& busSearch;
  BusTroubles& troubles;
  const OutputSource describedOutputs;
};

}  // namespace brivane
