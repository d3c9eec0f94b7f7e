#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// A graphics card's connector.
struct Connector {
  /// The kernel's name: "card0-HDMI-A-1".
  std::string name;
  /// The kernel's number of the connector, by which window systems order outputs, too; 0 on kernels
  /// that don't report it.
  std::int64_t number = 0;
  /// The EDID that the kernel last read from the panel; empty without one.
  std::string edid;
  /// N of the panel's "/dev/i2c-N"; absent without a bus.
  std::optional<unsigned> bus;
  /// N of the bus that the connector links to; beside a bus of its own, for other plugs.
  std::optional<unsigned> linkedBus;
  bool isConnected = false;
  /// Whether the kernel shows a picture on it.
  bool isEnabled = false;

  /// "card0".
  std::string card() const { return name.substr(0, name.find('-')); }
  /// Whether the panel is built in.
  bool isInternal() const;
  /// From the EDID; nothing without a usable one.
  std::optional<PanelIdentity> panel() const;
};

/// The graphics cards' connectors, read from sysfs at each call. Any thread.
class Connectors {
 public:
  explicit Connectors(std::filesystem::path classFolder = "/sys/class/drm");

  /// With a panel or without, sorted by name.
  std::vector<Connector> all() const;

  /// Whether the panel is on stand-by (DPMS). False for connectors that the kernel doesn't drive
  /// (disabled, or driven by a driver of its own): their state is unknown.
  bool isAsleep(const std::string& connector) const;

  /// The graphics card's device; nothing for cards on no bus with device classes.
  std::optional<std::filesystem::path> graphicsCard(const std::string& connector) const;

 private:
  Connector describe(const std::string& name) const;

  const std::filesystem::path folder;
};

}  // namespace brivane
