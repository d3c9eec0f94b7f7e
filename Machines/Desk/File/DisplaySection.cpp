#include "Machines/Desk/File/DisplaySection.h"

#include <algorithm>
#include <limits>

#include "Machines/Desk/File/FirmwareSection.h"
#include "Machines/Desk/File/GammaSection.h"

// A display with nothing but an identifier is an ordinary monitor: external, answering, to the
// right of the previous display, on a port of its own.

namespace brivane {
namespace {

constexpr std::size_t mostDisplays = 64;
constexpr std::uint32_t largestNumber = std::numeric_limits<std::uint32_t>::max();
constexpr double farthestCoordinate = 1'000'000;
constexpr double largestHeadroom = 64;
constexpr std::int64_t deepestPanel = 64;
constexpr std::uint32_t appleVendor = 1552;
constexpr std::uint32_t plainVendor = 8738;

const std::vector<std::pair<std::string_view, ScreenPresence>>& presences() {
  static const std::vector<std::pair<std::string_view, ScreenPresence>> names = {
      {"numbered", ScreenPresence::numbered},
      {"unnumbered", ScreenPresence::unnumbered},
      {"none", ScreenPresence::none}};
  return names;
}

using EntriesName = std::pair<std::string_view, RegistryEntries>;

const std::vector<EntriesName>& entriesNames() {
  static const std::vector<EntriesName> names = {{"all", RegistryEntries::all},
                                                 {"noPanel", RegistryEntries::noPanel},
                                                 {"none", RegistryEntries::none},
                                                 {"panelTwice", RegistryEntries::panelTwice}};
  return names;
}

/// null removes the property, any other value replaces it.
void readOverride(JsonSection& section, std::string_view key,
                  RegistryDescription::Override& replacement) {
  const auto item = section.find(key);
  if (!item) return;
  replacement.emplace();
  if (!item->isNull()) item->to(replacement->emplace());
}

void readRegistry(const JsonItem& item, RegistryDescription& registry) {
  auto section = item.section();
  readRegistryEntries(section, registry.entries);
  readOverride(section, "DisplayAttributes", registry.displayAttributes);
  readOverride(section, "ProductAttributes", registry.productAttributes);
  readOverride(section, "LegacyManufacturerID", registry.legacyManufacturerID);
  readOverride(section, "ProductID", registry.productID);
  readOverride(section, "SerialNumber", registry.serialNumber);
  readOverride(section, "Location", registry.location);
  section.read("panelDepth", registry.panelDepth, 1, deepestPanel);
  section.read("panelController", registry.panelController);
  section.read("proxy", registry.hasProxy);
  section.read("proxyParent", registry.proxyParent);
  section.read("service", registry.serviceCanBeCreated);
  section.finish();
}

void readDisplayServices(const JsonItem& item, DisplayServicesDescription& services) {
  auto section = item.section();
  double level = services.level;
  section.read("level", level, 0.0, 1.0);
  services.level = static_cast<float>(level);
  section.read("canChange", services.canChange);
  section.finish();
  services.fingerprint = item.fingerprint();
}

/// null removes the part; without the key it stays as it is.
template <typename Part>
void readPart(JsonSection& section, std::string_view key, std::optional<Part>& part,
              void (*read)(const JsonItem&, Part&)) {
  const auto item = section.find(key);
  if (!item) return;
  part.reset();
  if (!item->isNull()) read(*item, part.emplace());
}

void readIdentifier(JsonSection& section, DisplayDescription& display,
                    const std::vector<DisplayDescription>& others) {
  section.require("identifier", display.identifier, 1, largestNumber);
  const auto item = section.find("identifier");
  if (!item) return;
  const auto same = std::ranges::find(others, display.identifier, &DisplayDescription::identifier);
  if (same == others.end()) return;
  item->complain(std::to_string(display.identifier) + " is already the identifier of /displays/" +
                 std::to_string(same - others.begin()));
}

std::string freePort(bool isBuiltIn, const std::vector<DisplayDescription>& others) {
  for (int number = 0;; ++number) {
    std::string port = (isBuiltIn ? "disp" : "dispext") + std::to_string(number);
    if (std::ranges::find(others, port, &DisplayDescription::port) == others.end()) return port;
  }
}

void setDefaults(DisplayDescription& display, const std::vector<DisplayDescription>& others) {
  display.name =
      display.isBuiltIn ? "Built-in Display" : "Display " + std::to_string(display.identifier);
  display.vendor = display.isBuiltIn ? appleVendor : plainVendor;
  display.model = display.identifier;
  display.port = freePort(display.isBuiltIn, others);
  double rightmost = 0;
  for (const auto& other : others) {
    rightmost = std::max(rightmost, other.frame.x + other.frame.width);
  }
  display.frame = {rightmost, 0, 1920, 1080};
  display.gamma.emplace();
  if (display.isBuiltIn) {
    display.displayServices.emplace();
  } else {
    display.firmware.emplace();
  }
}

DisplayDescription readDisplay(const JsonItem& item,
                               const std::vector<DisplayDescription>& others) {
  DisplayDescription display;
  auto section = item.section();
  readIdentifier(section, display, others);
  display.number = display.identifier;
  section.read("builtIn", display.isBuiltIn);
  setDefaults(display, others);
  section.read("name", display.name);
  section.read("vendor", display.vendor, 0, largestNumber);
  section.read("model", display.model, 0, largestNumber);
  section.read("serial", display.serial, 0, largestNumber);
  if (const auto frame = section.find("frame")) readFrame(*frame, display.frame);
  section.read("port", display.port);
  readPresence(section, display.screen);
  if (const auto registry = section.find("registry")) readRegistry(*registry, display.registry);
  readPart(section, "firmware", display.firmware, readFirmware);
  readPart(section, "gamma", display.gamma, readGamma);
  readHeadroom(section, display.headroom);
  readPart(section, "displayServices", display.displayServices, readDisplayServices);
  section.finish();
  return display;
}

}  // namespace

void readPoint(const JsonItem& item, Point& point) {
  auto section = item.section();
  section.require("x", point.x, -farthestCoordinate, farthestCoordinate);
  section.require("y", point.y, -farthestCoordinate, farthestCoordinate);
  section.finish();
}

void readFrame(const JsonItem& item, Rect& frame) {
  auto section = item.section();
  section.require("x", frame.x, -farthestCoordinate, farthestCoordinate);
  section.require("y", frame.y, -farthestCoordinate, farthestCoordinate);
  section.require("width", frame.width, 1, farthestCoordinate);
  section.require("height", frame.height, 1, farthestCoordinate);
  section.finish();
}

void readRegistryEntries(JsonSection& section, RegistryEntries& entries) {
  section.read("entries", entries, entriesNames());
}

std::string_view registryEntriesName(RegistryEntries entries) {
  return std::ranges::find(entriesNames(), entries, &EntriesName::second)->first;
}

std::optional<RegistryEntries> registryEntriesOf(std::string_view name) {
  const auto found = std::ranges::find(entriesNames(), name, &EntriesName::first);
  return found == entriesNames().end() ? std::nullopt : std::optional(found->second);
}

void readPresence(JsonSection& section, ScreenPresence& presence) {
  section.read("screen", presence, presences());
}

std::string_view presenceName(ScreenPresence presence) {
  using Name = std::pair<std::string_view, ScreenPresence>;
  return std::ranges::find(presences(), presence, &Name::second)->first;
}

void readHeadroom(JsonSection& section, double& headroom) {
  const auto item = section.find("headroom");
  if (item && !item->isNull()) item->to(headroom, 1, largestHeadroom);
}

void readDisplays(const JsonItem& item, std::vector<DisplayDescription>& displays) {
  for (const auto& element : item.elements(0, mostDisplays)) {
    displays.push_back(readDisplay(element, displays));
  }
}

}  // namespace brivane
