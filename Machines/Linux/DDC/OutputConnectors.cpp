#include "Machines/Linux/DDC/OutputConnectors.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace brivane {
namespace {

using Candidates = std::vector<const Connector*>;

/// "card0-HDMI-A-1" and "HDMI-1" give "HDMI-1": window systems leave out the letter of the plug.
std::string plainName(std::string name) {
  if (name.starts_with("card")) name.erase(0, name.find('-') + 1);
  for (const std::string type : {"HDMI-A-", "HDMI-B-"}) {
    if (name.starts_with(type)) name.erase(type.size() - 2, 2);
  }
  return name;
}

template <typename Fits>
Candidates those(const std::vector<Connector>& connectors, const Fits& fit) {
  Candidates found;
  for (const Connector& connector : connectors) {
    if (fit(connector)) found.push_back(&connector);
  }
  return found;
}

bool areNumbered(const std::vector<Connector>& connectors) {
  return std::ranges::any_of(connectors, [](const auto& each) { return each.number != 0; });
}

bool namesAreTheKernels(const DescribedOutputs& outputs, const std::vector<Connector>& connectors) {
  std::set<std::string> known;
  for (const Connector& connector : connectors) known.insert(plainName(connector.name));
  return std::ranges::all_of(
      outputs.names, [&](const std::string& name) { return known.contains(plainName(name)); });
}

/// The connectors that the server names for the output, with a panel or without.
Candidates named(const DescribedOutput& output, const std::vector<Connector>& connectors,
                 bool namesCount) {
  if (output.connectorNumber && areNumbered(connectors)) {
    return those(connectors,
                 [&](const auto& each) { return each.number == *output.connectorNumber; });
  }
  if (!namesCount) return {};
  return those(connectors,
               [&](const auto& each) { return plainName(each.name) == plainName(output.name); });
}

const Connector* certain(const DescribedOutput& output, Candidates candidates) {
  if (candidates.size() > 1) {
    std::erase_if(candidates, [&](const Connector* each) {
      return !output.panel || each->panel() != output.panel;
    });
  }
  if (candidates.size() != 1 || !candidates.front()->isConnected) return nullptr;
  const auto panel = candidates.front()->panel();
  const bool isContradicted = output.panel && panel && *output.panel != *panel;
  return isContradicted ? nullptr : candidates.front();
}

/// The connectors with that EDID, those in use if the kernel knows which, in the order of their
/// cards and numbers; none where the order of several is unknown.
Candidates inUse(const PanelIdentity& panel, const std::vector<Connector>& connectors) {
  const auto fits = [&](const Connector& each) {
    return each.isConnected && each.panel() == panel;
  };
  auto found = those(connectors, [&](const auto& each) { return fits(each) && each.isEnabled; });
  if (found.empty()) found = those(connectors, fits);
  std::ranges::sort(found, {}, [](const Connector* each) {
    return std::tuple(each->card().size(), each->card(), each->number);
  });
  const bool isUnordered =
      std::ranges::any_of(found, [](const Connector* each) { return each->number == 0; });
  return found.size() > 1 && isUnordered ? Candidates() : found;
}

}  // namespace

std::map<DisplayID, Connector> connectorsOf(const DescribedOutputs& outputs,
                                            const std::vector<Connector>& connectors) {
  std::map<const Connector*, std::vector<DisplayID>> displays;
  std::map<PanelIdentity, std::set<DisplayID>> unnamed;
  const bool namesCount = namesAreTheKernels(outputs, connectors);
  for (const DescribedOutput& output : outputs.online) {
    const auto candidates = named(output, connectors, namesCount);
    if (const auto* connector = certain(output, candidates)) {
      displays[connector].push_back(output.display);
    } else if (candidates.empty() && output.panel) {
      unnamed[*output.panel].insert(output.display);
    }
  }
  for (const auto& [panel, group] : unnamed) {
    auto candidates = inUse(panel, connectors);
    std::erase_if(candidates, [&](const Connector* each) { return displays.contains(each); });
    if (candidates.size() != group.size()) continue;
    for (std::size_t index = 0; const DisplayID display : group) {
      displays[candidates[index++]].push_back(display);
    }
  }
  std::map<DisplayID, Connector> known;
  for (const auto& [connector, claims] : displays) {
    if (claims.size() == 1) known.emplace(claims.front(), *connector);
  }
  return known;
}

PanelIdentity identityOf(const DescribedOutput& output, const Connector* connector) {
  if (output.panel) return *output.panel;
  const auto panel = connector == nullptr ? std::nullopt : connector->panel();
  if (panel) return *panel;
  // FNV-1a, 32 bits.
  std::uint32_t hash = 2166136261U;
  for (const char letter : output.name) {
    hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
  }
  return {.vendor = 0, .model = 0, .serial = hash};
}

}  // namespace brivane
