#include "Tests/Support/DDCBus/WorldDescription.h"

#include <linux/input-event-codes.h>

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "Tests/Support/EDIDBuilder.h"

namespace brivane {
namespace {

using Fields = std::map<std::string, std::string>;

/// A scancode of `size` bytes, as the kernel holds it.
std::vector<std::uint8_t> scancode(std::uint32_t value, std::size_t size = 4) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t index = 0; index < size; ++index) {
    bytes.push_back(static_cast<std::uint8_t>(value >> (8 * index)));
  }
  return bytes;
}

/// A USB keyboard sends HID usages: page in the upper half, usage in the lower.
std::vector<SimulatedKey> usbKeys() {
  std::vector<SimulatedKey> keys{{scancode(0x70004), KEY_A}};
  for (unsigned index = 0; index < 7; ++index) {
    keys.push_back({scancode(0x70068 + index), KEY_F13 + index});
  }
  keys.push_back({scancode(0xC006F), KEY_BRIGHTNESSUP});
  keys.push_back({scancode(0xC0070), KEY_BRIGHTNESSDOWN});
  return keys;
}

/// A laptop's keyboard, two of whose keys mean the same.
std::vector<SimulatedKey> laptopKeys() {
  return {{scancode(0x1E), KEY_A},
          {scancode(0xD4), KEY_BRIGHTNESSDOWN},
          {scancode(0xD5), KEY_BRIGHTNESSUP},
          {scancode(0xE5), KEY_BRIGHTNESSUP}};
}

Fields split(const std::string& text) {
  Fields fields;
  std::istringstream parts(text);
  std::getline(parts, fields["name"], ',');
  for (std::string part; std::getline(parts, part, ',');) {
    const std::size_t equals = part.find('=');
    if (equals == std::string::npos) throw std::invalid_argument(part + ": no value");
    fields[part.substr(0, equals)] = part.substr(equals + 1);
  }
  return fields;
}

std::string take(Fields& fields, const std::string& key, const std::string& otherwise) {
  const auto found = fields.extract(key);
  return found ? found.mapped() : otherwise;
}

unsigned takeNumber(Fields& fields, const std::string& key, unsigned otherwise) {
  return static_cast<unsigned>(
      std::stoul(take(fields, key, std::to_string(otherwise)), nullptr, 0));
}

void expectEmpty(const Fields& fields) {
  if (!fields.empty()) throw std::invalid_argument(fields.begin()->first + ": unknown");
}

std::vector<std::uint8_t> takeEDID(Fields& fields) {
  EDIDBuilder panel;
  panel.vendor = take(fields, "vendor", "BRV");
  panel.model = static_cast<std::uint16_t>(takeNumber(fields, "model", 1));
  panel.serial = takeNumber(fields, "serial", 0);
  panel.name = take(fields, "label", "Monitor");
  const std::string file = take(fields, "edid", "");
  if (file.empty()) return panel.bytes();
  std::ifstream bytes(file, std::ios::binary);
  if (!bytes) throw std::invalid_argument(file + ": can't be read");
  return {std::istreambuf_iterator<char>(bytes), {}};
}

ConnectorDescription monitor(Fields fields) {
  ConnectorDescription connector;
  connector.name = take(fields, "name", "");
  connector.number = static_cast<int>(takeNumber(fields, "number", 0));
  connector.edid = takeEDID(fields);
  connector.maximum = takeNumber(fields, "maximum", 100);
  connector.level = takeNumber(fields, "level", 50);
  connector.mood = take(fields, "mood", "");
  const bool isOwn = takeNumber(fields, "own", 0) != 0;
  if (fields.contains("bus")) {
    (isOwn ? connector.ownBus : connector.linkedBus) = takeNumber(fields, "bus", 0);
  }
  expectEmpty(fields);
  return connector;
}

BacklightDescription backlight(Fields fields) {
  BacklightDescription described{take(fields, "name", ""), take(fields, "type", "raw"),
                                 takeNumber(fields, "maximum", 100),
                                 takeNumber(fields, "level", 50)};
  expectEmpty(fields);
  return described;
}

InputDescription keyboard(Fields fields) {
  InputDescription input{take(fields, "name", ""), {}, {}};
  for (const auto& [code, keycode] : fields) {
    input.keys.push_back({scancode(static_cast<std::uint32_t>(std::stoul(code, nullptr, 16))),
                          static_cast<unsigned>(std::stoul(keycode))});
  }
  return input;
}

void add(WorldDescription& world, const std::string& option, const std::string& text) {
  if (option == "--monitor") {
    world.connectors.push_back(monitor(split(text)));
  } else if (option == "--backlight") {
    world.backlights.push_back(backlight(split(text)));
  } else if (option == "--keyboard") {
    world.inputs.push_back(keyboard(split(text)));
  } else {
    throw std::invalid_argument(option + ": unknown option");
  }
}

}  // namespace

WorldDescription standardWorld() {
  const EDIDBuilder chained{.vendor = "BRV", .model = 0x3003, .serial = 7, .name = "Gamma"};
  WorldDescription world;
  world.connectors = {
      monitor(split("DP-1,bus=6,own=1,number=101,vendor=BRV,model=0x2002,label=Beta,maximum=255,"
                    "level=255")),
      monitor(split("HDMI-A-1,bus=5,number=93,vendor=BRV,model=0x1001,serial=1234567,label=Alpha")),
      monitor(split("eDP-1,bus=4,own=1,number=80,vendor=LAP,model=3,label=Laptop")),
  };
  // As a socket that also carries HDMI: nothing answers on the linked bus.
  world.connectors[0].linkedBus = 7;
  world.connectors.push_back({.name = "DP-2",
                              .isConnected = false,
                              .number = 110,
                              .edid = {},
                              .ownBus = {},
                              .linkedBus = {},
                              .mood = {}});
  world.connectors.push_back({.name = "DP-3",
                              .isConnected = false,
                              .number = 120,
                              .edid = chained.bytes(),
                              .ownBus = {},
                              .linkedBus = {},
                              .mood = {}});
  world.adapters = {{"chain", 8, false, chained.bytes()},
                    {"stranger", 9, false, EDIDBuilder{.vendor = "XYZ", .model = 9}.bytes()},
                    {"mainboard", 10, true, chained.bytes()}};
  world.backlights = {{"acpi_video0", "firmware", 15, 6}, {"intel_backlight", "raw", 1000, 400}};
  world.inputs = {{"event3", usbKeys(), {}},
                  {"event4", {}, {KEY_BRIGHTNESSUP, KEY_BRIGHTNESSDOWN}},
                  {"event5", laptopKeys(), {}},
                  {"event6", {}, {BTN_LEFT, BTN_RIGHT}}};
  return world;
}

std::optional<WorldDescription> describedWorld(const std::vector<std::string>& options,
                                               std::string& problem) try {
  WorldDescription world;
  for (std::size_t index = 0; index < options.size(); index += 2) {
    if (index + 1 == options.size()) throw std::invalid_argument(options[index] + ": no value");
    add(world, options[index], options[index + 1]);
  }
  return world;
} catch (const std::exception& failure) {
  problem = failure.what();
  return std::nullopt;
}

}  // namespace brivane
