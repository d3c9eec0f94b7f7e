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

/// What programs ask of the keyboard: in memory all programs on the desk, in a folder those of one
/// process. Main thread.
struct DeskInput {
  /// The applications' hotkeys come before all others.
  explicit DeskInput(const DeskDescription& desk);

  HotkeyTable hotkeys;
  TapStream taps;
};

/// The simulated hardware: what a desk file describes, what became of it, and what it remembers. It
/// outlives every program that uses it: several machines may share one in memory, several
/// processes one folder.
///
/// Any thread, but for the settings domains, the input, and what happens to the hardware beside the
/// seams ("changes" below), which are for the main thread. Displays that are unknown or not plugged
/// in have no firmware, no gamma table and no display services.
class DeskHardware {
 public:
  /// `stateFolder` is where the state lives; null: in this object alone.
  explicit DeskHardware(DeskDescription deskDescription,
                        std::unique_ptr<StateFolder> stateFolder = nullptr);

  /// The desk as its file describes it: of what can change, how it was at first.
  const DeskDescription& description() const { return desk; }

  void setTrace(Trace trace) { ownTracer->set(std::move(trace)); }
  const Tracer& tracer() const { return *ownTracer; }
  /// For those who may outlive the hardware.
  std::shared_ptr<const Tracer> sharedTracer() const { return ownTracer; }

  /// Called on the main thread: after a change here, by whoever made it; after one by another
  /// process, by `meetEvents`. It may not observe or stop observing from within. Main thread.
  using NoticeHandler = std::function<void(HardwareNotice notice)>;
  Observation observe(NoticeHandler handler);

  // Other processes. In memory there are none. Main thread.

  /// Where they share the hardware; nothing in memory.
  std::optional<std::filesystem::path> stateFolder() const;
  /// The file in that folder whose change means that something has happened.
  static constexpr auto eventsFile = "events.json";
  /// From now on what they announce counts, for `meetEvents`.
  void follow();
  /// From now on the keyboard's keys come to this process, when no other one has them, or from the
  /// first `meetEvents` on after that one has ended.
  void takeKeyboard();
  /// Whether some change could not be written to the folder, which the log says then.
  bool hasUnsaved() const { return folder && folder->hasUnsaved(); }
  /// Nobody can call `meetEvents` in time: says so in one line of the log.
  void reportUnwatched();
  /// Tells the observers of what other processes have announced since the last time.
  void meetEvents();

  // Displays

  AttachedDisplays::Snapshot displays() const { return attached.all(); }
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> display(DisplayID display) const {
    return attached.find(display);
  }

  /// The display's side of an I2C transfer; see `MonitorFirmware`. While the machine sleeps, nobody
  /// acknowledges.
  std::int32_t writeI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                        std::span<const std::uint8_t> bytes, Instant now);
  std::int32_t readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                       std::span<std::uint8_t> bytes, Instant now);

  /// Nothing without firmware. It goes on when the display is unplugged.
  std::optional<MonitorState> monitor(DisplayID display);

  /// Samples per channel; 0 without a gamma table.
  std::uint32_t gammaCapacity(DisplayID display) const;
  /// The table in force, of the display's capacity; nothing without one.
  std::optional<GammaTable> gammaTable(DisplayID display);
  /// Puts a table of any count from 1 in force. It reads back as many samples as the display holds,
  /// interpolated linearly; samples that are no finite numbers become 0. False without a table and
  /// while it is refused.
  bool setGammaTable(DisplayID display, GammaTable table);
  void restoreCalibratedTables();
  /// Called after every table that a program puts in force or tries to; it may read the hardware.
  /// While somebody observes, tables are for the main thread.
  using GammaHandler = std::function<void(DisplayID display, bool isTaken)>;
  Observation observeGamma(GammaHandler handler);

  /// The display-services level, 0 to 1; nothing when they don't know the display.
  std::optional<float> panelLevel(DisplayID display);
  /// False when they don't know the display, can't change it, or the level is no number; the panel
  /// limits the level to what it can show.
  bool setPanelLevel(DisplayID display, float level);

  Point pointer();

  // The system

  HIDMapping hidMapping();
  void setHIDMapping(const HIDMapping& mapping);

  /// What a brightness key does that no program took: the built-in panel, if there is one whose
  /// level can be changed, goes a sixteenth of its range up or down.
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
  /// As what it arrived when it was pressed; nothing when it isn't down.
  std::optional<HIDUsage> takeKeyUp(HIDUsage key);

  /// Whether what a key sets off is another process's affair.
  bool isKeyboardElsewhere() const;
  /// What a key sets off is one process's affair. Hands the change to that process when it isn't
  /// this one; false when it is this one, or nobody follows. Main thread.
  bool handKeyOver(const KeyChange& change);
  /// Called for keys that were handed to this process. Main thread.
  using KeyHandler = std::function<void(const KeyChange& change)>;
  Observation observeKeys(KeyHandler handler);

  /// A settings domain of the desk's user; null when the desk has no such domain. For the main
  /// thread; it must outlive neither this nor the folder's Runtime.
  std::unique_ptr<UserDefaults> openDomain(const std::string& name);
  /// Everything in such a domain; nothing when the desk has none.
  std::optional<PropertyValue::Dictionary> domainContents(const std::string& name);

  // The programs on the desk. In memory they get numbers of their own, 501 and up; in a folder they
  // are real processes, of which one can be announced. Main thread.

  ProcessID nextProcessID();
  std::vector<ProcessID> announcedPrograms();
  /// False when another process of the folder is announced.
  bool announceProgram(ProcessID program);
  void endProgram(ProcessID program);

  // Changes. Each returns false when the display is not plugged in (or has no such part), and then
  // nothing happens. What the system would announce is announced.

  /// Behind all others, with the calibrated gamma table and the firmware new; false also when there
  /// is a display of that identifier.
  bool plug(const DisplayDescription& display);
  bool unplug(DisplayID display);
  /// As it was when it was unplugged, but with the calibrated gamma table; false when it never was.
  bool replug(DisplayID display);
  bool setFrame(DisplayID display, const Rect& frame);
  bool setHeadroom(DisplayID display, double headroom);
  bool setScreenPresence(DisplayID display, ScreenPresence presence);
  bool swapPorts(DisplayID one, DisplayID other);
  /// The next so many gamma tables for the display are refused.
  bool refuseGamma(DisplayID display, int times);

  /// What happens to a monitor beside the bus, whether or not it is plugged in.
  bool setLevelByButtons(DisplayID display, std::uint16_t level);
  bool setMood(DisplayID display, MonitorMood mood);
  bool fallAsleep(DisplayID display);
  bool wake(DisplayID display, Instant now);

  /// All monitors fall asleep or wake; the screens' waking is announced, the machine's too and
  /// before it.
  void sleepScreens();
  void wakeScreens(Instant now);
  void sleepSystem();
  void wakeSystem(Instant now);

  void movePointer(Point position);
  void setAccessibilityGranted(bool granted);
  void setAppearance(DeskAppearance appearance);
  /// The system finds all event taps that are enabled too slow, and disables them.
  void timeOutTaps();
  /// The system announces it although nothing changed.
  void announce(HardwareNotice notice);

 private:
  struct Domain {
    DefaultsDescription description;
    PropertyValue::Dictionary valuesInMemory;
  };

  /// What a display has beside its description; it outlives being unplugged.
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
  /// The one whose affair the keys are.
  std::optional<AnnouncedProcess> keyboardProcess;
  bool wantsKeyboard = false;
  std::set<ProcessID> programsInMemory;
  ProcessID lastProcessID = 500;
};

}  // namespace brivane
