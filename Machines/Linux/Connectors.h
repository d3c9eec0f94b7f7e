#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// A socket of a graphics card with something plugged in.
struct Connector {
  /// The kernel's name: "card0-HDMI-A-1".
  std::string name;
  /// The kernel's number of the connector, in the order in which window systems list outputs too;
  /// 0 on kernels that don't tell.
  std::int64_t number = 0;
  /// What the kernel last read from the panel; empty when it has none.
  std::string edid;
  /// N of the "/dev/i2c-N" that leads to the panel; absent when the connector has none.
  std::optional<unsigned> bus;

  /// Whether it is wired to a panel inside the computer.
  bool isInternal() const;
};

/// The graphics cards' connectors, read from the kernel at each call. Any thread.
class Connectors {
 public:
  explicit Connectors(std::filesystem::path classFolder = "/sys/class/drm");

  /// By name.
  std::vector<Connector> connected() const;

  /// Whether the panel behind the connector is switched to stand-by (DPMS). A connector that the
  /// kernel doesn't drive (disabled, or lit by a driver of its own) says nothing about stand-by.
  bool isAsleep(const std::string& connector) const;

 private:
  Connector describe(const std::string& name) const;

  const std::filesystem::path folder;
};

}  // namespace brivane
