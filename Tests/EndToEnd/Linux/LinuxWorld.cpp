#include "Tests/EndToEnd/Linux/LinuxWorld.h"

#include <stdlib.h>

#include <fstream>
#include <stdexcept>

#include "Tests/Support/ControlFile.h"

namespace brivane {

LinuxWorld::LinuxWorld() {
  const char* const folder = getenv("BRIVANE_DDC_BUS");
  if (folder == nullptr) throw std::runtime_error("this test runs inside ddc-bus-host only");
  bus = folder;
  turn("HDMI-A-1", "level", "50");
  turn("DP-1", "level", "255");
  for (const auto* connector : {"HDMI-A-1", "DP-1"}) turn(connector, "mood", "");
  // As a desktop leaves them; the server's own first ramps end below white.
  std::vector<std::uint16_t> linear;
  for (std::uint32_t level = 0; level < 256; ++level) {
    linear.push_back(static_cast<std::uint16_t>(level * 257));
  }
  for (const auto monitor :
       {standardMonitor::left, standardMonitor::middle, standardMonitor::right}) {
    screens.setGamma(monitor, {linear, linear, linear});
  }
}

std::uint16_t LinuxWorld::luminance(const std::string& connector) const {
  unsigned level = 0;
  std::ifstream(bus / connector / "level") >> level;
  return static_cast<std::uint16_t>(level);
}

std::vector<std::string> LinuxWorld::wireLog() const {
  std::ifstream file(bus / "wire.log");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::string LinuxWorld::keymap(const std::string& input) const {
  return TemporaryFolder::read(bus / input / "keymap");
}

void LinuxWorld::turn(const std::string& connector, const std::string& knob,
                      const std::string& value) const {
  writeControlFile(bus / connector / knob, value);
}

std::map<std::string, std::string> LinuxWorld::environment() const {
  return {{"BRIVANE_DESK", ""},
          {"DISPLAY", screens.display()},
          {"HOME", home.path},
          {"XDG_CONFIG_HOME", ""},
          {"XDG_RUNTIME_DIR", home.path},
          {"XAUTHORITY", ""},
          {"DBUS_SESSION_BUS_ADDRESS", ""}};
}

void LinuxWorld::enter() const {
  for (const auto& [variable, value] : environment()) {
    if (value.empty()) {
      unsetenv(variable.c_str());
    } else {
      setenv(variable.c_str(), value.c_str(), 1);
    }
  }
}

}  // namespace brivane
