// Connectors are folders in /sys/class/drm. A DisplayPort connector's AUX channel is an "i2c-N"
// folder inside the connector's; the "ddc" link may then lead to the pins that the same socket uses
// for HDMI. So the folder is preferred to the link.

#include "Machines/Linux/Connectors.h"

#include <algorithm>
#include <array>
#include <string_view>

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

Connectors::Connectors(std::filesystem::path classFolder) : folder(std::move(classFolder)) {}

std::vector<Connector> Connectors::connected() const {
  std::vector<Connector> found;
  for (const std::string& name : namesIn(folder)) {
    if (readTextAttribute(folder / name / "status") == "connected") found.push_back(describe(name));
  }
  return found;
}

bool Connectors::isAsleep(const std::string& connector) const {
  const auto power = readTextAttribute(folder / connector / "dpms");
  if (!power || *power == "On") return false;
  return readTextAttribute(folder / connector / "enabled") != "disabled";
}

Connector Connectors::describe(const std::string& name) const {
  const std::filesystem::path connector = folder / name;
  Connector found{name, readNumberAttribute(connector / "connector_id").value_or(0),
                  readAttribute(connector / "edid").value_or(""), ownChannel(connector)};
  if (!found.bus) found.bus = linkedChannel(connector);
  return found;
}

}  // namespace brivane
