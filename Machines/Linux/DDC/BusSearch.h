#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Machines/Linux/DDC/BusTroubles.h"
#include "Machines/Linux/DDC/Connectors.h"
#include "Machines/Linux/DDC/SleepGate.h"

namespace brivane {

/// Finds the I2C bus of panels whose connector leads to none, as with drivers that keep their buses
/// apart and on DisplayPort chains: by the EDID that the panel itself answers with. Only adapters
/// of the panel's own graphics card that belong to no connector are asked, only at the address of
/// the EDID, and again only when connectors, panels, adapters or permissions have changed. Any
/// thread.
class BusSearch {
 public:
  /// Both must outlive this. `deviceClass` lists the adapters that have a device file.
  BusSearch(const Connectors& machineConnectors, SleepGate& machineSleepGate,
            std::filesystem::path deviceClass = "/sys/class/i2c-dev");

  /// Fills in the bus of each connector that has a panel, an EDID and no bus, when exactly one
  /// adapter answers with that EDID and no other connector has the same. `all` holds every
  /// connector. Nothing is asked while the machine sleeps or one of these panels is on stand-by.
  void complete(std::vector<Connector>& all);

  /// Whether the adapter ("i2c-5") belongs to a graphics card or a connector.
  bool mayLeadToMonitor(const std::string& adapter) const;

  /// Why the latest `complete` found no bus for the connector, if that isn't the panel's doing.
  std::optional<BusTrouble> obstacle(const std::string& connector) const;

 private:
  struct Panel {
    std::string edid;
    std::filesystem::path card;

    bool operator==(const Panel&) const = default;
  };
  struct Adapter {
    std::filesystem::path card;
    /// Whether this user may open the device file.
    bool isOpenToUser = false;

    bool operator==(const Adapter&) const = default;
  };
  /// By bus.
  using Adapters = std::map<unsigned, Adapter>;
  struct Arrangement {
    /// By connector.
    std::map<std::string, Panel> panels;
    Adapters adapters;

    bool operator==(const Arrangement&) const = default;
  };
  using Answers = std::multimap<std::string, unsigned>;

  Arrangement arrangementOf(const std::vector<Connector>& all) const;
  void addFreeAdapters(Arrangement& arrangement, const std::vector<Connector>& all) const;
  void search(const Arrangement& arrangement, const std::vector<Connector>& all);
  static std::optional<unsigned> onlyBus(const Answers& answers, const Adapters& adapters,
                                         const Panel& panel);
  static bool isAnyRefused(const Adapters& adapters, const std::filesystem::path& card);
  std::optional<Answers> ask(const Arrangement& arrangement);
  std::variant<std::string, std::int32_t> readEDID(unsigned bus);

  const Connectors& connectors;
  SleepGate& sleepGate;
  const std::filesystem::path folder;
  mutable std::mutex mutex;
  std::optional<Arrangement> searched;
  /// The buses found in `searched`, by connector.
  std::map<std::string, unsigned> found;
  std::map<std::string, BusTrouble> obstacles;
};

}  // namespace brivane
