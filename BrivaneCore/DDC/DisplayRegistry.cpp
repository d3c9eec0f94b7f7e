// Walking the whole registry takes long, and monitors come and go: the result of a walk is kept for
// five seconds. So is a failure, or every lookup would repeat the walk.

#include "BrivaneCore/DDC/DisplayRegistry.h"

#include <algorithm>
#include <set>
#include <utility>

#include "BrivaneCore/DDC/DisplayIdentityResolver.h"
#include "BrivaneCore/DDC/IORegistryScanning.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

constexpr double rescanAfterSeconds = 5.0;

}  // namespace

DisplayRegistry::DisplayRegistry(DisplaySystem& displaySystem, IORegistry& ioRegistry,
                                 SymbolLoader& loader, Runtime& machineRuntime)
    : displays(displaySystem),
      registry(ioRegistry),
      bridge(std::make_shared<const IOAVBridge>(loader)),
      runtime(machineRuntime) {}

bool DisplayRegistry::ddcAvailable() const {
  return bridge->isComplete();
}

std::vector<DisplayID> DisplayRegistry::onlineDisplayIDs() const {
  const auto count = displays.onlineDisplayCount();
  if (!count) return {};
  return displays.onlineDisplayList(*count).value_or(std::vector<DisplayID>{});
}

bool DisplayRegistry::isOnline(DisplayID display) const {
  const auto online = onlineDisplayIDs();
  return std::ranges::find(online, display) != online.end();
}

std::vector<DisplayID> DisplayRegistry::onlineExternalDisplayIDs() const {
  std::vector<DisplayID> external = onlineDisplayIDs();
  std::erase_if(external, [this](DisplayID display) { return displays.isBuiltIn(display); });
  return external;
}

std::string DisplayRegistry::localizedName(DisplayID display) const {
  return localizedNames({display}).front();
}

std::vector<std::string> DisplayRegistry::localizedNames(
    const std::vector<DisplayID>& named) const {
  std::map<DisplayID, std::string> screenNames;
  for (const Screen& screen : displays.screens()) {
    if (screen.number) screenNames.emplace(*screen.number, screen.localizedName);
  }
  std::vector<std::string> names;
  for (const DisplayID display : named) {
    const auto screenName = lookUp(screenNames, display);
    names.push_back(screenName ? *screenName : nameWithoutScreen(display));
  }
  return names;
}

std::string DisplayRegistry::nameWithoutScreen(DisplayID display) const {
  if (displays.isBuiltIn(display)) return "Built-in Display";
  return "Display " + std::to_string(display);
}

void DisplayRegistry::rescanIfNeeded(bool force) {
  const bool isFresh =
      lastScan.has_value() && secondsBetween(*lastScan, runtime.now()) < rescanAfterSeconds;
  if (force || !isFresh) scan();
}

std::shared_ptr<DDCTransport> DisplayRegistry::handle(DisplayID display) {
  if (displays.isBuiltIn(display)) return nullptr;
  rescanIfNeeded(false);
  const auto port = resolvePort(display);
  if (!port) return nullptr;
  return lookUp(handlesByPort, *port).value_or(nullptr);
}

std::optional<std::string> DisplayRegistry::resolvePort(DisplayID display) const {
  const PanelIdentity wanted = displays.panelIdentity(display);
  std::vector<DisplayIdentityResolver::ExternalDisplay> external;
  for (const DisplayID online : onlineExternalDisplayIDs()) {
    const PanelIdentity panel = online == display ? wanted : displays.panelIdentity(online);
    external.push_back({online, panel.vendor, panel.model});
  }
  std::set<std::string> ports;
  for (const auto& [port, handle] : handlesByPort) ports.insert(port);
  return DisplayIdentityResolver::resolvePort(wanted, display, panels, external, ports);
}

void DisplayRegistry::scan() {
  lastScan = runtime.now();
  if (!ddcAvailable()) return;
  // Begun again no more than once: hardware may come and go without a pause.
  if (!walk()) walk();
}

bool DisplayRegistry::walk() {
  panels.clear();
  handlesByPort.clear();
  const auto entries = registry.allServices();
  if (entries == nullptr) return true;
  while (const auto entry = entries->next()) note(*entry);
  return !entries->wasCutShort();
}

void DisplayRegistry::note(const RegistryEntry& entry) {
  if (const auto panel = IORegistryScanning::panelNode(entry)) {
    panels[panel->port] = panel->identity;
    return;
  }
  const auto port = IORegistryScanning::externalAVProxyPort(entry);
  if (!port) return;
  if (auto service = bridge->createWithService()(entry)) {
    handlesByPort[*port] =
        std::make_shared<AVServiceHandle>(std::move(service), *port, bridge, runtime);
  }
}

}  // namespace brivane
