#pragma once

#include <optional>
#include <string>

#include "BrivaneCore/Seams/IORegistry.h"
#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// What a walk of the I/O registry looks for, and how it reads an entry: panels, the AV-service
/// proxies of external ports, and the ports of both. A port is the name of a display controller,
/// which begins with "disp". Pure; any thread.
struct IORegistryScanning {
  struct PanelNode {
    PanelIdentity identity;
    std::string port;

    bool operator==(const PanelNode&) const = default;
  };

  /// The panel that `entry` describes; nothing for any other entry.
  static std::optional<PanelNode> panelNode(const RegistryEntry& entry);

  /// The port whose external monitor `entry` gives a service for; nothing for any other entry.
  static std::optional<std::string> externalAVProxyPort(const RegistryEntry& entry);

  /// The nearest of the eight entries above a panel's that is a display controller.
  static std::optional<std::string> portOfDisplayNode(const RegistryEntry& entry);

  /// The display controller that the entry directly above a proxy is named after: "disp0:dcpav" is
  /// at "disp0".
  static std::optional<std::string> portOfAVProxy(const RegistryEntry& entry);
};

}  // namespace brivane
