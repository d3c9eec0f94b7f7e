// A laptop can offer the same backlight several times: firmware, platform driver and raw registers
// of the graphics card. The kernel's documentation recommends this order; but a link to the panel's
// own connector is certain, and one to another connector or to a monitor leads to another panel.

#include "Machines/Linux/Backlight.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

/// Where the backlight's device is in the tree of devices; empty without one.
std::filesystem::path deviceOf(const std::filesystem::path& backlight) {
  std::error_code noLink;
  const auto target = std::filesystem::read_symlink(backlight / "device", noLink);
  if (noLink) return {};
  return (std::filesystem::weakly_canonical(backlight) / target).lexically_normal();
}

/// Whether the device is a monitor's own, reached over its bus (at the address of DDC/CI) or USB.
bool isMonitor(const std::filesystem::path& device) {
  return std::ranges::any_of(device, [](const std::filesystem::path& part) {
    const std::string name = part.string();
    return name.ends_with("-0037") || name.starts_with("usb");
  });
}

/// The connector that the backlight's device is; nothing for other devices.
std::optional<Connector> connectorAt(const std::filesystem::path& device) {
  Connector connector;
  connector.name = device.filename();
  return connector.name.starts_with("card") ? std::optional(connector) : std::nullopt;
}

/// The place in the order of preference; nothing for another panel's backlight.
std::optional<std::ptrdiff_t> rank(const std::filesystem::path& backlight,
                                   const std::optional<Connector>& panel) {
  const auto device = deviceOf(backlight);
  if (isMonitor(device)) return std::nullopt;
  if (const auto linked = connectorAt(device)) {
    if (panel ? linked->name != panel->name : !linked->isInternal()) return std::nullopt;
    if (panel) return -1;
  }
  static constexpr std::array<std::string_view, 3> types = {"firmware", "platform", "raw"};
  const auto type = readTextAttribute(backlight / "type").value_or("");
  return std::find(types.begin(), types.end(), type) - types.begin();
}

}  // namespace

LinuxBacklight::LinuxBacklight(DisplaySystem& displaySystem, ConnectorSource connectorSource,
                               MissingAccess& machineMissingAccess, SessionBacklight& byLogind,
                               std::filesystem::path classFolder)
    : displays(displaySystem),
      connectorOf(std::move(connectorSource)),
      missingAccess(machineMissingAccess),
      session(byLogind),
      folder(std::move(classFolder)) {}

std::int32_t LinuxBacklight::get(DisplayID display, float& level) const {
  const auto found = rangeOf(display);
  const auto* range = std::get_if<Range>(&found);
  if (range == nullptr) return std::get<std::int32_t>(found);
  const auto step = readNumberAttribute(range->folder / "brightness");
  if (!step) return EIO;
  const auto above = static_cast<double>(std::max(*step - range->lowest, std::int64_t{0}));
  level = static_cast<float>(above / static_cast<double>(range->highest - range->lowest));
  return 0;
}

std::int32_t LinuxBacklight::set(DisplayID display, float level) const {
  const auto found = rangeOf(display);
  const auto* range = std::get_if<Range>(&found);
  if (range == nullptr) return std::get<std::int32_t>(found);
  if (!(level >= 0 && level <= 1)) return EINVAL;
  const auto steps = static_cast<double>(range->highest - range->lowest);
  const std::int64_t step = range->lowest + std::llround(level * steps);
  const int error = writeAttribute(range->folder / "brightness", std::to_string(step));
  const bool isDenied = error == EACCES || error == EPERM;
  const bool isSetByLogind =
      isDenied && session.set(range->folder.filename(), static_cast<std::uint32_t>(step)) == 0;
  missingAccess.backlightDenied = isDenied && !isSetByLogind;
  return isSetByLogind ? 0 : error;
}

bool LinuxBacklight::canChange(DisplayID display) const {
  const auto backlight = backlightOf(display);
  return backlight &&
         (::access((*backlight / "brightness").c_str(), W_OK) == 0 || session.canSet());
}

std::variant<LinuxBacklight::Range, std::int32_t> LinuxBacklight::rangeOf(DisplayID display) const {
  const auto backlight = backlightOf(display);
  if (!backlight) return ENODEV;
  const std::int64_t highest = readNumberAttribute(*backlight / "max_brightness").value_or(0);
  if (highest == 0) return EIO;
  const bool isRaw = readTextAttribute(*backlight / "type") == "raw";
  return Range{*backlight, isRaw && highest > 1 ? 1 : 0, highest};
}

std::optional<std::filesystem::path> LinuxBacklight::backlightOf(DisplayID display) const {
  const auto names = namesIn(folder);
  if (names.empty() || !displays.isBuiltIn(display)) return std::nullopt;
  const auto panel = connectorOf(display);
  std::map<std::ptrdiff_t, std::filesystem::path> offers;
  for (const std::string& name : names) {
    if (const auto place = rank(folder / name, panel)) offers.emplace(*place, folder / name);
  }
  return offers.empty() ? std::nullopt : std::optional(offers.begin()->second);
}

}  // namespace brivane
