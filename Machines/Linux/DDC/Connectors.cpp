// Connectors are folders in /sys/class/drm. A DisplayPort connector's AUX channel is an "i2c-N"
// folder inside the connector's; the "ddc" link may then lead to the pins that the same socket uses
// for HDMI. So the folder is preferred to the link.

#include "Machines/Linux/DDC/Connectors.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Machines/Linux/System/EDID.h"
#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

constexpr std::string_view busPrefix = "i2c-";

std::optional<unsigned> ownChannel(const std::filesystem::path& connector) {
  for (const std::string& name : namesIn(connector)) {
    if (const auto bus = numberBehind(busPrefix, name)) return bus;
  }
  return std::nullopt;
}

std::optional<unsigned> linkedChannel(const std::filesystem::path& connector) {
  std::error_code noLink;
  const auto target = std::filesystem::read_symlink(connector / "ddc", noLink);
  return numberBehind(busPrefix, target.filename().string());
}

}  // namespace

bool Connector::isInternal() const {
  constexpr std::array<std::string_view, 3> kinds = {"eDP-", "LVDS-", "DSI-"};
  const std::string_view kind = std::string_view(name).substr(name.find('-') + 1);
  return std::any_of(kinds.begin(), kinds.end(),
                     [&](std::string_view internal) { return kind.starts_with(internal); });
}

std::optional<PanelIdentity> Connector::panel() const {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(edid.data());  // chars as bytes
  const auto parsed = parseEDID({bytes, edid.size()});
  return parsed ? std::optional(parsed->panel) : std::nullopt;
}

Connectors::Connectors(std::filesystem::path classFolder) : folder(std::move(classFolder)) {}

std::vector<Connector> Connectors::all() const {
  std::vector<Connector> found;
  for (const std::string& name : namesIn(folder)) {
    if (std::filesystem::exists(folder / name / "status")) found.push_back(describe(name));
  }
  return found;
}

bool Connectors::isAsleep(const std::string& connector) const {
  const auto power = readTextAttribute(folder / connector / "dpms");
  if (!power || *power == "On") return false;
  return readTextAttribute(folder / connector / "enabled") != "disabled";
}

std::optional<std::filesystem::path> Connectors::graphicsCard(const std::string& connector) const {
  return deviceWith("class", folder / connector);
}

Connector Connectors::describe(const std::string& name) const {
  const std::filesystem::path connector = folder / name;
  const bool isConnected = readTextAttribute(connector / "status") == "connected";
  Connector found{.name = name,
                  .number = readNumberAttribute(connector / "connector_id").value_or(0),
                  .edid = isConnected ? readAttribute(connector / "edid").value_or("") : "",
                  .bus = ownChannel(connector),
                  .linkedBus = linkedChannel(connector),
                  .isConnected = isConnected,
                  .isEnabled = readTextAttribute(connector / "enabled") == "enabled"};
  if (!found.bus) found.bus = found.linkedBus;
  return found;
}

}  // namespace brivane
