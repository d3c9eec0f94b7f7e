#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/AVServiceHandle.h"
#include "BrivaneCore/DDC/IOAVBridge.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/IORegistry.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// Finds the DDC/CI channel of a display. Displays are numbered by the window system, channels hang
/// off entries of the I/O registry; panel identities and port names (of the display controllers,
/// "disp…") tie the two together.
///
/// `rescanIfNeeded`, `handle`, `resolvePort` and `scan` run on the DDC queue only. The other
/// operations keep nothing: names are for the main thread, the rest for main and DDC queue.
class DisplayRegistry {
 public:
  DisplayRegistry(DisplaySystem& displaySystem, IORegistry& ioRegistry, SymbolLoader& loader,
                  Runtime& machineRuntime);

  /// Whether this machine has the three calls that DDC/CI needs.
  bool ddcAvailable() const;

  /// In the window system's order; empty on any error.
  std::vector<DisplayID> onlineDisplayIDs() const;

  bool isOnline(DisplayID display) const;

  /// The online displays that are not built in, in the same order.
  std::vector<DisplayID> onlineExternalDisplayIDs() const;

  /// The screen's name; "Built-in Display" or "Display " and the number when it has no screen.
  std::string localizedName(DisplayID display) const;

  /// The same for each of the displays, in their order, with one look at the screens.
  std::vector<std::string> localizedNames(const std::vector<DisplayID>& named) const;

  /// Scans when forced, before the first scan, and when the last one is 5.0 s old or older.
  void rescanIfNeeded(bool force);

  /// The display's channel, scanning first if needed; null for the built-in panel and for displays
  /// that no port can be found for.
  std::shared_ptr<DDCTransport> handle(DisplayID display);

  /// The port of a display by what the last scan found.
  std::optional<std::string> resolvePort(DisplayID display) const;

  /// Forgets the last scan and walks the registry.
  void scan();

  /// The external panels found by the last scan, by port name.
  std::map<std::string, PanelIdentity> panels;
  /// The channels found by the last scan, by port name.
  std::map<std::string, std::shared_ptr<AVServiceHandle>> handlesByPort;
  /// When the last scan started; absent before the first.
  std::optional<Instant> lastScan;

 private:
  std::string nameWithoutScreen(DisplayID display) const;
  /// Forgets what an earlier walk found. False when a change of the registry has cut this one
  /// short.
  bool walk();
  /// Keeps the entry if it is a panel or an external channel.
  void note(const RegistryEntry& entry);

  DisplaySystem& displays;
  IORegistry& registry;
  const std::shared_ptr<const IOAVBridge> bridge;
  Runtime& runtime;
};

}  // namespace brivane
