#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <type_traits>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Keys/HotkeyTable.h"
#include "Machines/Common/Keys/TapStream.h"
#include "Machines/Common/Processes/AnnouncedProcess.h"
#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/KeyTable.h"
#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Hardware/EventQueue.h"
#include "Machines/Desk/Hardware/HardwareState.h"
#include "Machines/Desk/Hardware/MonitorFirmware.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// The hotkeys and taps that programs have registered: of all programs on a desk in memory, of one
/// process's with a folder. Main thread.
struct DeskInput {
  /// Registers the desk file's applications' hotkeys first.
  explicit DeskInput(const DeskDescription& desk);

  HotkeyTable hotkeys;
  TapStream taps;
};

/// The simulated hardware: the desk file's description and the current state. It outlives every
/// program that uses it; several machines may share one object, several processes one folder.
///
/// Any thread, except the settings domains, the input and the changes at the end of the class: main
/// thread. Displays that are unknown or not plugged in have no firmware, no gamma table and no
/// display services.
class DeskHardware {
 public:
  /// `stateFolder` holds the state; null: the state is in memory.
  explicit DeskHardware(DeskDescription deskDescription,
                        std::unique_ptr<StateFolder> stateFolder = nullptr);

  /// The desk as its file describes it, with the initial state of what can change.
  const DeskDescription& description() const { return desk; }

  void setTrace(Trace trace) { ownTracer->set(std::move(trace)); }
  const Tracer& tracer() const { return *ownTracer; }
  /// For objects that may outlive the hardware.
  std::shared_ptr<const Tracer> sharedTracer() const { return ownTracer; }

  /// Called on the main thread: by the function that made a change in this process, by `meetEvents`
  /// for changes by others. It must not add or remove observers. Main thread.
  using NoticeHandler = std::function<void(HardwareNotice notice)>;
  Observation observe(NoticeHandler handler);

  // Other processes, none without a folder. Main thread.

  /// The folder that they share; nothing in memory.
  std::optional<std::filesystem::path> stateFolder() const;
  /// The file in that folder that changes with every event.
  static constexpr auto eventsFile = "events.json";
  /// Starts collecting their events for `meetEvents`.
  void follow();
  /// Has this process handle the keyboard's keys, unless another process does; then, from the first
  /// `meetEvents` after that process has ended.
  void takeKeyboard();
  /// Whether some change could not be written to the folder; the log says so, too.
  bool hasUnsaved() const { return folder && folder->hasUnsaved(); }
  /// Logs, in one line, that events of other processes can't be watched.
  void reportUnwatched();
  /// Passes the events of other processes since the last call to the observers.
  void meetEvents();

  // Displays

  AttachedDisplays::Snapshot displays() const { return attached.all(); }
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> display(DisplayID display) const {
    return attached.find(display);
  }

  /// The display's side of an I2C transfer; see `MonitorFirmware`. While the machine sleeps,
  /// nothing acknowledges.
  std::int32_t writeI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                        std::span<const std::uint8_t> bytes, Instant now);
  std::int32_t readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                       std::span<std::uint8_t> bytes, Instant now);

  /// Nothing without firmware. Also for displays that are unplugged.
  std::optional<MonitorState> monitor(DisplayID display);

  /// Samples per channel; 0 without a gamma table.
  std::uint32_t gammaCapacity(DisplayID display) const;
  /// The table in force, with as many samples as the display's capacity; nothing without one.
  std::optional<GammaTable> gammaTable(DisplayID display);
  /// Sets a table of 1 sample per channel or more. Samples that are not finite become 0; the table
  /// is interpolated linearly to the display's capacity. False without a table and while tables are
  /// refused.
  bool setGammaTable(DisplayID display, GammaTable table);
  void restoreCalibratedTables();
  /// Called after every attempt of a program to set a table; may read the hardware. While there is
  /// an observer, tables may be set on the main thread only.
  using GammaHandler = std::function<void(DisplayID display, bool isTaken)>;
  Observation observeGamma(GammaHandler handler);

  /// The display-services level, 0 to 1; nothing for displays without display services.
  std::optional<float> panelLevel(DisplayID display);
  /// Clamped to the panel's range. False without display services, when the level can't be changed,
  /// or is not a number.
  bool setPanelLevel(DisplayID display, float level);

  Point pointer();

  // The system

  HIDMapping hidMapping();
  void setHIDMapping(const HIDMapping& mapping);

  /// The system's own action for a brightness key that no program consumed: the built-in panel, if
  /// its level can be changed, goes up or down by a sixteenth of its range.
  void changeSystemBrightness(BrightnessKey key);

  LaunchState launchState();
  void setLaunchAgentEnabled(bool isEnabled);

  bool isSystemAsleep();
  bool isAccessibilityGranted();
  DeskAppearance appearance();

  DeskInput& input() { return ownInput; }

  KeysDown keysDown();
  /// False when the key is down already.
  bool putKeyDown(HIDUsage key, HIDUsage arrived);
  /// Returns the usage that the mapping gave the key when it was pressed; nothing when the key
  /// isn't down.
  std::optional<HIDUsage> takeKeyUp(HIDUsage key);

  /// Whether another process handles the keys.
  bool isKeyboardElsewhere() const;
  /// Only one process handles keys. Forwards the change to that process; false when it is this one,
  /// or when no process follows. Main thread.
  bool handKeyOver(const KeyChange& change);
  /// Called for keys that another process forwarded to this one. Main thread.
  using KeyHandler = std::function<void(const KeyChange& change)>;
  Observation observeKeys(KeyHandler handler);

  /// A settings domain of the desk's user; null when the desk has no such domain. Main thread;
  /// destroy it before the hardware and before the folder's Runtime.
  std::unique_ptr<UserDefaults> openDomain(const std::string& name);
  /// Everything in the domain; nothing when the desk has no such domain.
  std::optional<PropertyValue::Dictionary> domainContents(const std::string& name);

  // The programs on the desk. In memory they have simulated process IDs from 501 up; with a folder
  // they are real processes, of which only one can be announced. Main thread.

  ProcessID nextProcessID();
  std::vector<ProcessID> announcedPrograms();
  /// False when another process is announced already.
  bool announceProgram(ProcessID program);
  void endProgram(ProcessID program);

  // Changes by the user or the world, announced as the system would. Each returns false, and
  // changes nothing, when the display is not plugged in or lacks the part.

  /// Appends the display, with the calibrated gamma table and fresh firmware; false also when its
  /// identifier is taken.
  bool plug(const DisplayDescription& display);
  bool unplug(DisplayID display);
  /// Restores the display as it was unplugged, but with the calibrated gamma table; false when it
  /// never was unplugged.
  bool replug(DisplayID display);
  bool setFrame(DisplayID display, const Rect& frame);
  bool setHeadroom(DisplayID display, double headroom);
  bool setScreenPresence(DisplayID display, ScreenPresence presence);
  bool swapPorts(DisplayID one, DisplayID other);
  /// Refuses the display's next gamma tables, `times` of them.
  bool refuseGamma(DisplayID display, int times);

  /// At the monitor itself, plugged in or not.
  bool setLevelByButtons(DisplayID display, std::uint16_t level);
  bool setMood(DisplayID display, MonitorMood mood);
  bool fallAsleep(DisplayID display);
  bool wake(DisplayID display, Instant now);

  /// All monitors fall asleep or wake. Waking the screens is announced; waking the machine
  /// announces the machine first, then the screens.
  void sleepScreens();
  void wakeScreens(Instant now);
  void sleepSystem();
  void wakeSystem(Instant now);

  void movePointer(Point position);
  void setAccessibilityGranted(bool granted);
  void setAppearance(DeskAppearance appearance);
  /// Disables all enabled event taps, as the system does when they are too slow.
  void timeOutTaps();
  /// An announcement without a change.
  void announce(HardwareNotice notice);

 private:
  struct Domain {
    DefaultsDescription description;
    PropertyValue::Dictionary valuesInMemory;
  };

  /// A display's stateful parts; kept while it is unplugged.
  struct Parts {
    std::optional<MonitorFirmware> firmware;
    std::optional<StoredState<MonitorState>> monitor;
    std::optional<StoredState<GammaState>> gamma;
    std::optional<StoredState<PanelState>> panel;
  };

  Parts makeParts(const DisplayDescription& description) const;
  Parts* find(DisplayID display);
  Parts* findAttached(DisplayID display);
  template <typename Operation>
  std::int32_t transfer(DisplayID display, const Operation& operation);
  bool takeGammaTable(DisplayID display, const GammaTable& table);
  void forgetGamma(DisplayID display);
  std::optional<float> changePanelLevel(DisplayID display,
                                        const std::function<float(float level)>& wanted);
  bool screensChanged(bool happened, const std::string& line);
  template <typename Operation>
  bool changeMonitor(DisplayID display, const std::string& line, const Operation& operation);
  template <typename State>
  State readState(StoredState<State>& state) {
    const std::lock_guard lock(mutex);
    return state.read();
  }
  template <typename State>
  void replaceState(StoredState<State>& state, const std::type_identity_t<State>& value) {
    const std::lock_guard lock(mutex);
    state.update([&](State& changed) {
      changed = value;
      return true;
    });
  }
  void tell(const std::vector<DeskEvent>& happened);
  void tellOf(HardwareNotice notice);
  void tellOf(const KeyChange& change);
  void tellOf(TapTimeout timeout);
  void tellOfGamma(DisplayID display, bool isTaken);

  const DeskDescription desk;
  const std::unique_ptr<StateFolder> folder;
  const std::shared_ptr<Tracer> ownTracer = std::make_shared<Tracer>();
  AttachedDisplays attached;
  std::mutex mutex;
  std::map<DisplayID, Parts> parts;
  StoredState<Point> pointerState;
  StoredState<HIDMapping> mapping;
  StoredState<LaunchState> launch;
  StoredState<SystemState> system;
  StoredState<GrantState> grant;
  StoredState<DeskAppearance> currentAppearance;
  StoredState<KeysDown> pressed;
  std::map<std::string, Domain> domains;
  DeskInput ownInput;
  EventQueue events;
  std::deque<DeskEvent> untold;
  bool isTelling = false;
  std::vector<std::weak_ptr<NoticeHandler>> noticeHandlers;
  std::vector<std::weak_ptr<KeyHandler>> keyHandlers;
  std::vector<std::weak_ptr<GammaHandler>> gammaHandlers;
  std::optional<AnnouncedProcess> announcedProcess;
  /// The process that handles the keys.
  std::optional<AnnouncedProcess> keyboardProcess;
  bool wantsKeyboard = false;
  std::set<ProcessID> programsInMemory;
  ProcessID lastProcessID = 500;
};

}  // namespace brivane
