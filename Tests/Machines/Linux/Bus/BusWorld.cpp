#include "Tests/Machines/Linux/Bus/BusWorld.h"

#include <linux/input-event-codes.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "Machines/Linux/HIDUtil/InputDevices.h"
#include "Tests/Support/ControlFile.h"

namespace brivane {
namespace {

std::vector<std::string> linesOf(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void restoreConnectors() {
  std::ofstream("/sys/class/drm/card0-DP-3/status") << "disconnected\n";
  for (const auto* connector : {"card0-HDMI-A-1", "card0-DP-1", "card0-eDP-1"}) {
    const std::string folder = std::string("/sys/class/drm/") + connector;
    std::ofstream(folder + "/status") << "connected\n";
    std::ofstream(folder + "/enabled") << "enabled\n";
    std::ofstream(folder + "/dpms") << "On\n";
  }
}

Scancode scancode(std::uint32_t value) {
  Scancode bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

}  // namespace

void BusWorld::SetUp() {
  const char* const folder = std::getenv("BRIVANE_DDC_BUS");
  ASSERT_NE(folder, nullptr) << "This test runs inside ddc-bus-host only.";
  state = folder;
  turn("HDMI-A-1", "maximum", "100");
  turn("HDMI-A-1", "level", "50");
  turn("DP-1", "maximum", "255");
  turn("DP-1", "level", "255");
  for (const auto* device : {"HDMI-A-1", "DP-1", "eDP-1"}) turn(device, "mood", "");
  restoreConnectors();
  std::ofstream("/sys/class/backlight/acpi_video0/brightness") << "6\n";
  forgetEvents();
}

void BusWorld::turn(const std::string& device, const std::string& knob,
                    const std::string& value) const {
  writeControlFile(state / device / knob, value);
}

std::string BusWorld::knob(const std::string& device, const std::string& knob) const {
  const auto lines = linesOf(state / device / knob);
  return lines.empty() ? "" : lines.front();
}

std::vector<std::string> BusWorld::events(const std::string& device) const {
  std::vector<std::string> found;
  for (const std::string& line : linesOf(state / "wire.log")) {
    std::istringstream words(line);
    std::string time;
    std::string name;
    std::string event;
    words >> time >> name >> std::ws;
    std::getline(words, event);
    if (name == device) found.push_back(event);
  }
  return found;
}

void BusWorld::forgetEvents() const {
  std::ofstream(state / "wire.log").flush();
}

void BusWorld::writeConnector(const std::string& connector, const std::string& attribute,
                              const std::string& text) {
  std::ofstream("/sys/class/drm/" + connector + "/" + attribute, std::ios::binary) << text;
}

std::vector<std::string> BusWorld::keymap(const std::string& input) const {
  return linesOf(state / input / "keymap");
}

void BusWorld::plugKeyboardsIn() {
  const std::map<std::string, std::map<std::uint32_t, KeyCode>> keymaps = {
      {"event3", {{0xC006F, KEY_BRIGHTNESSUP}, {0xC0070, KEY_BRIGHTNESSDOWN}}},
      {"event5", {{0xD4, KEY_BRIGHTNESSDOWN}, {0xD5, KEY_BRIGHTNESSUP}, {0xE5, KEY_BRIGHTNESSUP}}}};
  for (const auto& [name, keys] : keymaps) {
    const auto opened = DeviceKeymap::open("/dev/input/" + name);
    for (const auto& [code, keycode] : keys) {
      ASSERT_EQ(std::get<DeviceKeymap>(opened).setKey(scancode(code), keycode), 0);
    }
  }
}

Forbidden::Forbidden(const std::string& path) : place(reallyAt(path)) {
  EXPECT_EQ(::chmod(place.c_str(), 0), 0);
}

Forbidden::~Forbidden() {
  ::chmod(place.c_str(), 0666);
}

BusTest::BusTest() {
  constexpr std::uint32_t vendorBRV = 0x0A56;
  constexpr std::uint32_t vendorLAP = 0x3030;
  displays.online = {{laptop, vendorLAP, 3, 0, true},
                     {alpha, vendorBRV, 0x1001, 1234567, false},
                     {beta, vendorBRV, 0x2002, 0, false}};
}

DescribedOutputs BusTest::outputs() const {
  DescribedOutputs described;
  for (const FakeDisplay& display : displays.online) {
    described.online.push_back(
        {.display = display.id,
         .name = "DUMMY" + std::to_string(display.id),
         .connectorNumber = {},
         .panel = PanelIdentity{display.vendor, display.model, display.serial}});
    described.names.push_back(described.online.back().name);
  }
  return described;
}

std::shared_ptr<AVService> BusTest::service(const std::string& connector) {
  const auto pass = registry.allServices();
  while (const auto entry = pass->next()) {
    const auto* proxy = dynamic_cast<const LinuxRegistryEntry*>(entry.get());
    if (proxy->channel && proxy->channel->connector == connector) return bus.createService(*entry);
  }
  return nullptr;
}

std::shared_ptr<AVServiceHandle> BusTest::handle(const std::string& connector) {
  return std::make_shared<AVServiceHandle>(service(connector), "disp",
                                           std::make_shared<const IOAVBridge>(loader), runtime);
}

}  // namespace brivane
