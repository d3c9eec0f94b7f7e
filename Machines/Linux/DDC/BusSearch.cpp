#include "Machines/Linux/DDC/BusSearch.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ranges>
#include <set>
#include <utility>

#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Linux/DDC/I2CDevice.h"
#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

constexpr std::size_t baseBlockSize = 128;

bool isToBeSearchedFor(const Connector& connector) {
  return !connector.bus && !connector.isInternal() && connector.panel().has_value();
}

std::string baseBlock(const Connector& connector) {
  return connector.edid.substr(0, baseBlockSize);
}

/// A display controller's class begins with 03 (PCI-SIG's list of class codes).
bool isGraphicsCard(const std::filesystem::path& device) {
  return readTextAttribute(device / "class").value_or("").starts_with("0x03");
}

}  // namespace

BusSearch::BusSearch(const Connectors& machineConnectors, SleepGate& machineSleepGate,
                     std::filesystem::path deviceClass)
    : connectors(machineConnectors), sleepGate(machineSleepGate), folder(std::move(deviceClass)) {}

void BusSearch::complete(std::vector<Connector>& all) {
  const std::scoped_lock lock(mutex);
  const Arrangement arrangement = arrangementOf(all);
  if (searched != arrangement) {
    searched.reset();
    found.clear();
    obstacles.clear();
    search(arrangement, all);
  }
  for (Connector& connector : all) {
    const auto bus = found.find(connector.name);
    if (bus != found.end()) connector.bus = bus->second;
  }
}

bool BusSearch::mayLeadToMonitor(const std::string& adapter) const {
  const auto device = deviceWith("class", folder / adapter);
  if (device && isGraphicsCard(*device)) return true;
  const auto bus = numberBehind("i2c-", adapter);
  return bus && std::ranges::any_of(connectors.all(), [bus](const Connector& connector) {
           return connector.bus == bus || connector.linkedBus == bus;
         });
}

std::optional<BusTrouble> BusSearch::obstacle(const std::string& connector) const {
  const std::scoped_lock lock(mutex);
  return lookUp(obstacles, connector);
}

BusSearch::Arrangement BusSearch::arrangementOf(const std::vector<Connector>& all) const {
  Arrangement arrangement;
  for (const Connector& connector : all) {
    if (!isToBeSearchedFor(connector)) continue;
    const auto card = connectors.graphicsCard(connector.name);
    if (card) arrangement.panels[connector.name] = {baseBlock(connector), *card};
  }
  if (!arrangement.panels.empty()) addFreeAdapters(arrangement, all);
  return arrangement;
}

void BusSearch::addFreeAdapters(Arrangement& arrangement, const std::vector<Connector>& all) const {
  std::set<unsigned> taken;
  for (const Connector& connector : all) {
    if (connector.bus) taken.insert(*connector.bus);
    if (connector.linkedBus) taken.insert(*connector.linkedBus);
  }
  std::set<std::filesystem::path> cards;
  for (const Panel& panel : std::views::values(arrangement.panels)) cards.insert(panel.card);
  for (const std::string& name : namesIn(folder)) {
    const auto bus = numberBehind("i2c-", name);
    if (!bus || taken.contains(*bus)) continue;
    const auto card = deviceWith("class", folder / name);
    if (!card || !cards.contains(*card) || !isGraphicsCard(*card)) continue;
    const bool isOpenToUser = ::access(("/dev/" + name).c_str(), R_OK | W_OK) == 0;
    arrangement.adapters[*bus] = {*card, isOpenToUser};
  }
}

void BusSearch::search(const Arrangement& arrangement, const std::vector<Connector>& all) {
  for (const std::string& connector : std::views::keys(arrangement.panels)) {
    if (connectors.isAsleep(connector)) obstacles[connector] = BusTrouble::asleep;
  }
  if (!obstacles.empty()) return;
  const auto answers = ask(arrangement);
  if (!answers) return;
  searched = arrangement;
  for (const auto& entry : arrangement.panels) {
    const Panel& panel = entry.second;
    const auto bus = onlyBus(*answers, arrangement.adapters, panel);
    if (bus && std::ranges::count(all, panel.edid, baseBlock) == 1) {
      found[entry.first] = *bus;
    } else if (isAnyRefused(arrangement.adapters, panel.card)) {
      obstacles[entry.first] = BusTrouble::notPermitted;
    }
  }
}

/// The only adapter of the panel's card that answered with the panel's EDID.
std::optional<unsigned> BusSearch::onlyBus(const Answers& answers, const Adapters& adapters,
                                           const Panel& panel) {
  std::vector<unsigned> buses;
  for (const auto& [edid, bus] : answers) {
    const bool isOnCard = lookUp(adapters, bus).value_or(Adapter{}).card == panel.card;
    if (edid == panel.edid && isOnCard) buses.push_back(bus);
  }
  return buses.size() == 1 ? std::optional(buses.front()) : std::nullopt;
}

bool BusSearch::isAnyRefused(const Adapters& adapters, const std::filesystem::path& card) {
  return std::ranges::any_of(adapters, [&](const auto& adapter) {
    return adapter.second.card == card && !adapter.second.isOpenToUser;
  });
}

/// Nothing when the machine sleeps or another program uses one of the adapters: to be asked again.
std::optional<BusSearch::Answers> BusSearch::ask(const Arrangement& arrangement) {
  Answers answers;
  for (const auto& [bus, adapter] : arrangement.adapters) {
    if (!adapter.isOpenToUser) continue;
    const auto answer = readEDID(bus);
    if (const auto* edid = std::get_if<std::string>(&answer)) {
      answers.emplace(*edid, bus);
    } else if (std::get<std::int32_t>(answer) == EHOSTDOWN ||
               std::get<std::int32_t>(answer) == EWOULDBLOCK) {
      return std::nullopt;
    }
  }
  return answers;
}

std::variant<std::string, std::int32_t> BusSearch::readEDID(unsigned bus) {
  const auto passage = sleepGate.enter();
  if (!passage) return EHOSTDOWN;
  const I2CDevice device(bus);
  if (const std::int32_t error = device.lock(); error == EWOULDBLOCK) return error;
  std::array<std::uint8_t, baseBlockSize> bytes{};
  if (const std::int32_t error = device.readEDID(bytes); error != 0) return error;
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace brivane
