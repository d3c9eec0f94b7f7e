// A laptop can offer the same backlight several times: firmware, platform driver and raw registers
// of the graphics card. The kernel's documentation recommends this order.

#include "Machines/Linux/Backlight.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <string>
#include <utility>

#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

/// The rank of a backlight's type in the order of preference; other types come last.
std::ptrdiff_t rank(const std::filesystem::path& backlight) {
  static constexpr std::array<std::string_view, 3> types = {"firmware", "platform", "raw"};
  const auto type = readTextAttribute(backlight / "type").value_or("");
  return std::find(types.begin(), types.end(), type) - types.begin();
}

}  // namespace

LinuxBacklight::LinuxBacklight(DisplaySystem& displaySystem, MissingAccess& machineMissingAccess,
                               SessionBacklight& byLogind, std::filesystem::path classFolder)
    : displays(displaySystem),
      missingAccess(machineMissingAccess),
      session(byLogind),
      folder(std::move(classFolder)) {}

bool LinuxBacklight::exists() const {
  return !namesIn(folder).empty();
}

std::int32_t LinuxBacklight::get(DisplayID display, float& level) const {
  const auto backlight = backlightOf(display);
  if (!backlight) return ENODEV;
  const auto steps = readNumberAttribute(*backlight / "brightness");
  const auto maximum = readNumberAttribute(*backlight / "max_brightness").value_or(0);
  if (!steps || maximum == 0) return EIO;
  level = static_cast<float>(static_cast<double>(*steps) / static_cast<double>(maximum));
  return 0;
}

std::int32_t LinuxBacklight::set(DisplayID display, float level) const {
  const auto backlight = backlightOf(display);
  if (!backlight) return ENODEV;
  if (!(level >= 0 && level <= 1)) return EINVAL;
  const auto maximum = readNumberAttribute(*backlight / "max_brightness");
  if (!maximum) return EIO;
  const std::int64_t steps = std::llround(level * static_cast<double>(*maximum));
  const int error = writeAttribute(*backlight / "brightness", std::to_string(steps));
  const bool isDenied = error == EACCES || error == EPERM;
  const bool isSetByLogind =
      isDenied && session.set(backlight->filename(), static_cast<std::uint32_t>(steps)) == 0;
  missingAccess.backlightDenied = isDenied && !isSetByLogind;
  return isSetByLogind ? 0 : error;
}

bool LinuxBacklight::canChange(DisplayID display) const {
  const auto backlight = backlightOf(display);
  return backlight &&
         (::access((*backlight / "brightness").c_str(), W_OK) == 0 || session.canSet());
}

std::optional<std::filesystem::path> LinuxBacklight::backlightOf(DisplayID display) const {
  const auto names = namesIn(folder);
  if (names.empty() || !displays.isBuiltIn(display)) return std::nullopt;
  return folder /
         *std::min_element(names.begin(), names.end(), [&](const auto& one, const auto& other) {
           return rank(folder / one) < rank(folder / other);
         });
}

}  // namespace brivane
