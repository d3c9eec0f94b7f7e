#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Hardware/DeskSystem.h"
#include "Machines/Desk/Hardware/MonitorFirmware.h"

namespace brivane {

/// The firmware of a desk's displays, kept while they are unplugged. Any thread.
class DeskMonitors {
 public:
  DeskMonitors(const DeskDescription& desk, StateFolder* stateFolder,
               const AttachedDisplays& attachedDisplays, DeskSystem& deskSystem,
               const Tracer& hardwareTracer);

  /// The display's side of an I2C transfer; see `MonitorFirmware`. While the machine sleeps,
  /// nothing acknowledges.
  std::int32_t writeI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                        std::span<const std::uint8_t> bytes, Instant now);
  std::int32_t readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                       std::span<std::uint8_t> bytes, Instant now);

  // At the monitor itself, plugged in or not.

  /// Nothing without firmware.
  std::optional<MonitorState> state(DisplayID display);
  /// False without firmware; so do the following.
  bool setLevelByButtons(DisplayID display, std::uint16_t level);
  bool setMood(DisplayID display, MonitorMood mood);
  bool fallAsleep(DisplayID display);
  bool wake(DisplayID display, Instant now);

 private:
  struct Monitor {
    MonitorFirmware firmware;
    StoredState<MonitorState> state;
  };

  template <typename Operation>
  std::int32_t transfer(DisplayID display, const Operation& operation);
  template <typename Operation>
  bool change(DisplayID display, const std::string& line, const Operation& operation);

  const AttachedDisplays& displays;
  DeskSystem& system;
  const Tracer& tracer;
  std::mutex mutex;
  std::map<DisplayID, Monitor> monitors;
};

}  // namespace brivane
