// Panels are matched by vendor, model and serial number, then without the serial number, which some
// panels report on one side only. Identical monitors can't be told apart by any of these: they are
// paired in a stable order, the lowest display number with the port that sorts first.

#include "BrivaneCore/DDC/DisplayIdentityResolver.h"

#include <algorithm>
#include <cstddef>

namespace brivane {
namespace {

using ExternalDisplay = DisplayIdentityResolver::ExternalDisplay;

/// In ascending order, as the map keeps them.
template <typename Predicate>
std::vector<std::string> portsWhere(const std::map<std::string, PanelIdentity>& panels,
                                    Predicate matches) {
  std::vector<std::string> ports;
  for (const auto& [port, panel] : panels) {
    if (matches(panel)) ports.push_back(port);
  }
  return ports;
}

std::optional<std::size_t> positionAmongLikes(const PanelIdentity& identity, DisplayID target,
                                              const std::vector<ExternalDisplay>& displays) {
  std::vector<DisplayID> likes;
  for (const ExternalDisplay& display : displays) {
    if (display.vendor == identity.vendor && display.model == identity.model) {
      likes.push_back(display.displayID);
    }
  }
  std::sort(likes.begin(), likes.end());
  const auto found = std::find(likes.begin(), likes.end(), target);
  if (found == likes.end()) return std::nullopt;
  return static_cast<std::size_t>(found - likes.begin());
}

}  // namespace

std::optional<std::string> DisplayIdentityResolver::resolvePort(
    const PanelIdentity& identity, DisplayID targetDisplayID,
    const std::map<std::string, PanelIdentity>& panels,
    const std::vector<ExternalDisplay>& onlineExternalDisplays,
    const std::set<std::string>& availablePorts) {
  auto ports = portsWhere(panels, [&](const PanelIdentity& panel) { return panel == identity; });
  if (ports.empty()) {
    ports = portsWhere(panels, [&](const PanelIdentity& panel) {
      return panel.vendor == identity.vendor && panel.model == identity.model;
    });
  }
  if (ports.size() == 1) return ports.front();
  if (ports.empty()) {
    // The only monitor there is must be at the only port there is.
    const bool isForced = onlineExternalDisplays.size() == 1 && availablePorts.size() == 1;
    return isForced ? std::optional(*availablePorts.begin()) : std::nullopt;
  }
  const auto position = positionAmongLikes(identity, targetDisplayID, onlineExternalDisplays);
  if (!position || *position >= ports.size()) return std::nullopt;
  return ports[*position];
}

}  // namespace brivane
