#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// A graphics card's connector with a panel.
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

  /// Whether the panel is built in.
  bool isInternal() const;
};

/// The graphics cards' connectors, read from sysfs at each call. Any thread.
class Connectors {
 public:
  explicit Connectors(std::filesystem::path classFolder = "/sys/class/drm");

  /// Sorted by name.
  std::vector<Connector> connected() const;

  /// Whether the panel is on stand-by (DPMS). False for connectors that the kernel doesn't drive
  /// (disabled, or driven by a driver of its own): their state is unknown.
  bool isAsleep(const std::string& connector) const;

 private:
  Connector describe(const std::string& name) const;

  const std::filesystem::path folder;
};

}  // namespace brivane
