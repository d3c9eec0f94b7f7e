#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// Finds the port that a display is attached to, by the identities that the window system and the
/// I/O registry know their panels by. Pure; any thread.
struct DisplayIdentityResolver {
  /// An external display as the window system knows it.
  struct ExternalDisplay {
    DisplayID displayID = 0;
    std::uint32_t vendor = 0;
    std::uint32_t model = 0;

    bool operator==(const ExternalDisplay&) const = default;
  };

  /// The port of `targetDisplayID`, whose panel is `identity`; nothing when it is unclear.
  /// `panels` are the registry's panels by port, `availablePorts` the ports that have a channel.
  static std::optional<std::string> resolvePort(
      const PanelIdentity& identity, DisplayID targetDisplayID,
      const std::map<std::string, PanelIdentity>& panels,
      const std::vector<ExternalDisplay>& onlineExternalDisplays,
      const std::set<std::string>& availablePorts);
};

}  // namespace brivane
