#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {

/// A whole PC: the X server's three displays, and, from "ddc-bus-host", the connectors, buses and
/// keyboards of the same three monitors: "HDMI-A-1" is the left one, "DP-1" the middle one, and the
/// right one hangs on "DP-2", which carries no DDC/CI. It has a home folder of its own.
class LinuxWorld {
 public:
  LinuxWorld();

  /// The raw luminance that the monitor at the connector shows.
  std::uint16_t luminance(const std::string& connector) const;
  /// All messages on the buses, a line each: time in microseconds, address and bytes.
  std::vector<std::string> wireLog() const;
  /// The keyboard's keymap as lines "<scancode in hex> <key code>".
  std::string keymap(const std::string& input) const;
  void turn(const std::string& connector, const std::string& knob, const std::string& value) const;

  /// The environment of a program in this world.
  std::map<std::string, std::string> environment() const;
  /// Sets it for this process.
  void enter() const;

  std::filesystem::path settings() const {
    return home / ".config/brivane/com.quorrel.brivane.json";
  }

  X11Rig screens;
  TemporaryFolder home;

 private:
  std::filesystem::path bus;
};

}  // namespace brivane
