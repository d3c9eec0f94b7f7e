#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Desk/DeskDescription.h"
#include "Machines/Desk/HardwareState.h"
#include "Machines/Desk/MonitorFirmware.h"
#include "Machines/Desk/StoredState.h"

namespace brivane {

/// The simulated hardware: what a desk file describes and what it remembers. It outlives every
/// program that uses it: several machines may share one in memory, several processes one folder.
///
/// Any thread, the settings domains aside. Unknown displays have no firmware, no gamma table and no
/// display services.
class DeskHardware {
 public:
  /// `stateFolder` is where the state lives; null: in this object alone.
  explicit DeskHardware(DeskDescription deskDescription,
                        std::unique_ptr<StateFolder> stateFolder = nullptr);

  const DeskDescription& description() const { return desk; }

  /// The display's side of an I2C transfer; see `MonitorFirmware`.
  std::int32_t writeI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                        std::span<const std::uint8_t> bytes, Instant now);
  std::int32_t readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                       std::span<std::uint8_t> bytes, Instant now);

  /// Nothing without firmware.
  std::optional<MonitorState> monitor(DisplayID display);

  /// What happens to a monitor beside the bus. False without firmware.
  bool setLevelByButtons(DisplayID display, std::uint16_t level);
  bool setMood(DisplayID display, MonitorMood mood);
  bool fallAsleep(DisplayID display);
  bool wake(DisplayID display, Instant now);

  /// Samples per channel; 0 without a gamma table.
  std::uint32_t gammaCapacity(DisplayID display) const;
  /// The table in force, of the display's capacity; nothing without one.
  std::optional<GammaTable> gammaTable(DisplayID display);
  /// Puts a table of any count from 2 in force. It reads back as many samples as the display holds,
  /// interpolated linearly; samples that are no finite numbers become 0. False without a table.
  bool setGammaTable(DisplayID display, GammaTable table);
  void restoreCalibratedTables();

  /// The display-services level, 0 to 1; nothing when they don't know the display.
  std::optional<float> panelLevel(DisplayID display);
  /// False when they don't know the display, can't change it, or the level is no number; the panel
  /// limits the level to what it can show.
  bool setPanelLevel(DisplayID display, float level);

  Point pointer();
  void movePointer(Point position);

  HIDMapping hidMapping();
  void setHIDMapping(const HIDMapping& mapping);

  /// A settings domain of the desk's user; null when the desk has no such domain. For the main
  /// thread; it must outlive neither this nor the folder's Runtime.
  std::unique_ptr<UserDefaults> openDomain(const std::string& name);

 private:
  struct Domain {
    DefaultsDescription description;
    PropertyValue::Dictionary valuesInMemory;
  };

  struct Display {
    const DisplayDescription& description;
    std::optional<MonitorFirmware> firmware;
    std::optional<StoredState<MonitorState>> monitor;
    std::optional<StoredState<GammaState>> gamma;
    std::optional<StoredState<PanelState>> panel;
  };

  Display attach(const DisplayDescription& description) const;
  Display* find(DisplayID display);
  template <typename Operation>
  bool changeMonitor(DisplayID display, const Operation& operation);

  const DeskDescription desk;
  const std::unique_ptr<StateFolder> folder;
  std::mutex mutex;
  std::map<DisplayID, Display> displays;
  StoredState<Point> pointerState;
  StoredState<HIDMapping> mapping;
  std::map<std::string, Domain> domains;
};

}  // namespace brivane
