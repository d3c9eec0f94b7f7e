#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/Lookup.h"
#include "BrivaneCore/Support/Observers.h"
#include "Machines/Common/Keys/HotkeyTable.h"
#include "Machines/Common/Keys/TapStream.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"

// A machine for unit tests: each part is a value that a test sets and reads. As long as a test only
// adds hardware, the parts behave as any machine's (FakeMachineUnderTest.cpp); by setting members a
// test provokes what no other machine can be made to do. Calls whose order matters are also noted,
// in one common list, with their virtual time.

namespace brivane {

/// "[<virtual milliseconds>] <what>" lines in the order of the calls. Any thread.
class CallNotes {
 public:
  explicit CallNotes(const Runtime* notedRuntime) : runtime(notedRuntime) {}
  void add(const std::string& what);
  std::vector<std::string> take();

 private:
  const Runtime* runtime;
  std::mutex mutex;
  std::vector<std::string> lines;
};

struct FakeDisplay {
  DisplayID id = 0;
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
  bool isBuiltIn = false;
};

/// Notes nothing until it has a target.
struct OptionalNotes {
  void add(const std::string& what) const {
    if (target != nullptr) target->add(what);
  }

  CallNotes* target = nullptr;
};

class FakeDisplaySystem : public DisplaySystem {
 public:
  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override { return allScreens; }
  std::optional<Screen> mainScreen() override { return main; }
  Point pointerPosition() override { return pointer; }

  /// Adds the display and a 100 x 100 screen for it, to the right of all screens so far; the first
  /// becomes the main screen.
  void add(const FakeDisplay& display, const std::string& name);

  std::vector<FakeDisplay> online;
  std::vector<Screen> allScreens;
  std::optional<Screen> main;
  Point pointer;
  bool refusesCount = false;
  bool refusesList = false;

 private:
  const FakeDisplay* find(DisplayID display) const;
};

struct FakeRegistryEntry : RegistryEntry {
  std::optional<std::string> className() const override { return ownClass; }
  std::optional<std::string> name() const override { return ownName; }
  std::optional<PropertyValue> property(std::string_view key) const override {
    return lookUp(properties, key);
  }
  std::shared_ptr<const RegistryEntry> parent() const override { return above; }

  std::optional<std::string> ownClass = "IOService";
  std::optional<std::string> ownName = "node";
  PropertyValue::Dictionary properties;
  std::shared_ptr<FakeRegistryEntry> above;
};

class FakeIORegistry : public IORegistry {
 public:
  std::unique_ptr<RegistryIterator> allServices() override;

  /// Adds an entry below `parent` (null: at the root).
  std::shared_ptr<FakeRegistryEntry> add(const std::string& className, const std::string& name,
                                         std::shared_ptr<FakeRegistryEntry> parent = nullptr);
  /// A controller named `port` with a panel node below it, as an ordinary external monitor has.
  std::shared_ptr<FakeRegistryEntry> addPanel(const std::string& port, std::int64_t vendor,
                                              std::int64_t model,
                                              std::optional<std::int64_t> serial);
  /// An external AV proxy whose parent is named `parentName`.
  std::shared_ptr<FakeRegistryEntry> addProxy(const std::string& parentName);

  std::vector<std::shared_ptr<FakeRegistryEntry>> entries;
  bool refuses = false;
  int walks = 0;
  /// So many of the next walks a change of the registry ends halfway.
  int walksToCutShort = 0;
};

class FakeSymbolLoader : public SymbolLoader {
 public:
  LibraryHandle open(std::string_view path, int mode) override;
  Symbol find(LibraryHandle library, std::string_view name) override;

  /// Libraries that exist, by path, and what each holds; "" is the global namespace.
  std::map<std::string, std::map<std::string, Symbol>> libraries;
  /// "open <path> <mode>" and "find <path or global> <name>", in the order of the calls.
  std::vector<std::string> calls;

 private:
  std::vector<std::string> openPaths;
};

/// A bus with one I2C channel per port, offered through `FakeSymbolLoader` by `install`.
class FakeBus {
 public:
  struct Channel {
    std::int32_t writeStatus = 0;
    std::int32_t readStatus = 0;
    std::uint16_t current = 50;
    std::uint16_t max = 100;
    bool answers = true;
    /// Another program has the bus: no turn.
    bool isBusy = false;
    int openTurns = 0;
    int messagesOutsideTurns = 0;
    /// Overrides the standard reply when set.
    std::function<std::vector<std::uint8_t>()> reply;
    /// Overrides `writeStatus` for one write each, in order.
    std::vector<std::int32_t> nextWriteStatuses;
    std::int64_t setCount = 0;
    std::int64_t getCount = 0;
  };

  explicit FakeBus(CallNotes& callNotes) : notes(callNotes) {}

  /// Makes the three AV-service calls available; the service of a proxy is the channel of its
  /// port (its parent's name up to a colon), if there is one.
  void install(FakeSymbolLoader& loader);

  std::map<std::string, Channel> channels;

 private:
  struct Service;
  static void noteTurn(Channel& channel);
  std::int32_t write(Service& service, std::uint32_t chip, std::uint32_t address,
                     std::span<const std::uint8_t> bytes);
  std::int32_t read(Service& service, std::uint32_t chip, std::uint32_t address,
                    std::span<std::uint8_t> bytes);

  CallNotes& notes;
  std::mutex mutex;
};

/// Display services over a map of levels, offered through `FakeSymbolLoader` by `install`.
class FakeDisplayServices {
 public:
  void install(FakeSymbolLoader& loader);

  std::map<DisplayID, float> levels;
  std::map<DisplayID, bool> canChange;
  std::int32_t getStatus = 0;
  std::int32_t setStatus = 0;
};

class FakeGammaTables : public GammaTables {
 public:
  struct Table {
    std::vector<float> red, green, blue;
    bool operator==(const Table&) const = default;
  };

  std::uint32_t capacity(DisplayID display) override {
    calls.push_back("capacity " + std::to_string(display));
    return lookUp(capacities, display).value_or(0);
  }
  std::int32_t readTable(DisplayID display, std::span<float> red, std::span<float> green,
                         std::span<float> blue, std::uint32_t& returned) override;
  std::int32_t writeTable(DisplayID display, std::span<const float> red,
                          std::span<const float> green, std::span<const float> blue) override;
  void restoreCalibratedTables() override;
  void discardForeignTables() override { calls.emplace_back("discard foreign"); }

  /// Gives the display a calibrated table: the same curve on all channels, or a linear one.
  void add(DisplayID display, const std::vector<float>& curve);
  void add(DisplayID display, std::uint32_t entries);

  /// In force, with as many samples as the display's capacity says.
  std::map<DisplayID, Table> tables;
  /// As they were written last.
  std::map<DisplayID, Table> written;
  std::map<DisplayID, std::uint32_t> capacities;
  std::map<DisplayID, std::int32_t> readStatus;
  std::map<DisplayID, std::int32_t> writeStatus;
  /// "capacity <id>", "read <id> <count>", "write <id> <count>", "restore all",
  /// "discard foreign".
  std::vector<std::string> calls;
  OptionalNotes notes;

 private:
  std::map<DisplayID, Table> calibrated;
};

class FakeUserDefaults : public UserDefaults {
 public:
  std::optional<PropertyValue> object(std::string_view key) const override {
    return lookUp(values, key);
  }
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

  PropertyValue::Dictionary values;
  /// "set <key>", with "=true", "=false" or "=<integer>" for other values than texts; "remove
  /// <key>".
  OptionalNotes notes;
};

class FakeAccessibility : public AccessibilityAccess {
 public:
  bool isTrusted() override { return trusted; }
  bool requestTrust() override {
    notes.add("ask for the Accessibility grant");
    ++prompts;
    return trusted;
  }

  bool trusted = false;
  int prompts = 0;
  OptionalNotes notes;
};

class FakeProcessRunner : public ProcessRunner {
 public:
  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

  using Tool = std::function<ProcessResult(const std::vector<std::string>& arguments)>;

  /// Tools by path.
  std::map<std::string, Tool> tools;
  /// What the next runs of anything else give, in order; the last one stays.
  std::vector<ProcessResult> results;
  /// Executable and arguments of each run.
  std::vector<std::vector<std::string>> runs;
  OptionalNotes notes;
};

class FakeApplications : public Applications {
 public:
  std::optional<std::string> bundleIdentifier() override { return bundle; }
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override { return ownID; }
  bool announce() override {
    notes.add("announce");
    if (atAnnouncing) atAnnouncing();
    return isAnnounced = canAnnounce;
  }

  std::optional<std::string> bundle = "com.quorrel.brivane";
  /// By identifier, without this process once it is announced.
  std::map<std::string, std::vector<ProcessID>> running;
  ProcessID ownID = 100;
  bool canAnnounce = true;
  std::function<void()> atAnnouncing;
  bool isAnnounced = false;
  OptionalNotes notes;
};

class FakeSystemLog : public SystemLog {
 public:
  explicit FakeSystemLog(CallNotes& callNotes) : notes(callNotes) {}
  void write(std::string_view line) override;

  std::vector<std::string> lines;

 private:
  CallNotes& notes;
  std::mutex mutex;
};

/// To unregister what isn't registered is a fatal error.
class FakeHotkeys : public Hotkeys {
 public:
  struct Registration {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;
    HotkeyID hotkey;

    bool operator==(const Registration&) const = default;
  };

  explicit FakeHotkeys(CallNotes& callNotes) : notes(callNotes) {}

  bool installHandler(Handler newHandler) override;
  void removeHandler() override;
  std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                             std::uint32_t modifiers,
                                                             HotkeyID hotkey) override;
  void unregisterHotkey(HotkeyReference reference) override;
  void setMenuOpen(bool isOpen) override { isMenuOpen = isOpen; }

  void press(std::uint32_t keyCode, std::uint32_t modifiers) { table.press({keyCode, modifiers}); }
  void release(std::uint32_t keyCode) { table.releaseKey(keyCode); }
  void keepModifiers(std::uint32_t modifiers) { table.keepModifiers(modifiers); }
  bool holds(std::uint32_t keyCode, std::uint32_t modifiers) const;

  bool refusesHandler = false;
  bool isMenuOpen = false;
  Handler handler;
  std::map<HotkeyReference, Registration> registrations;
  /// Combinations (key code, modifiers) that another program has.
  std::set<std::pair<std::uint32_t, std::uint32_t>> taken;

 private:
  CallNotes& notes;
  HotkeyTable table;
};

class FakeEventTaps : public EventTaps {
 public:
  FakeEventTaps(CallNotes& callNotes, const FakeAccessibility& machineAccess)
      : notes(callNotes), access(machineAccess) {}

  std::unique_ptr<EventTap> createTap(Handler handler) override;

  TapVerdict send(const TapEvent& event);
  /// A special key's press: `keyType` 2 is brightness up, 3 down; `state` 0x0A is down, 0x0B up.
  TapVerdict sendKey(std::uint32_t keyType, std::uint32_t state = 0x0A);

  /// Disables the latest tap and notifies it.
  void disable(std::uint32_t notice);
  bool exists() const { return !latest.expired(); }
  bool isEnabled() { return stream.hasEnabledTap(); }

  bool refuses = false;
  /// Another program keeps the brightness keys from the taps.
  bool areKeysElsewhere = false;

 private:
  class Tap;

  CallNotes& notes;
  const FakeAccessibility& access;
  TapStream stream;
  std::weak_ptr<TapStream::Tap> latest;
};

class FakeKeyboard : public Keyboard {
 public:
  bool hasLayout() override { return layout; }
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override { return flags; }
  bool isKeyDown(std::uint16_t keyCode) override { return keysDown.contains(keyCode); }

  bool layout = true;
  /// What keys give that give something else than on a US keyboard.
  std::map<std::uint16_t, std::string> characters;
  std::uint64_t flags = 0;
  std::set<std::uint16_t> keysDown;
};

/// A test that calls `announce` plays the main-queue task in which the system announces.
class FakeNotifications : public SystemNotifications {
 public:
  Observation observeScreenParameters(Task handler) override {
    notes.add("observe screen parameters");
    return screens.observe(handler);
  }
  Observation observeDidWake(Task handler) override {
    notes.add("observe wake");
    return wake.observe(handler);
  }
  Observation observeScreensDidWake(Task handler) override {
    notes.add("observe screens' wake");
    return screensWake.observe(handler);
  }
  Observation observeMonitorBuses(Task handler) override { return monitorBuses.observe(handler); }
  Observation observeKeyboards(Task handler) override { return keyboards.observe(handler); }
  Observation observeTermination(Task handler) override {
    notes.add("observe termination");
    return termination.observe(handler);
  }

  class Topic : public Observers<> {
   public:
    Observation observe(const Task& handler) {
      auto observation = Observers::observe(handler);
      observations.push_back(observation);
      return observation;
    }
    std::size_t observerCount() const {
      return static_cast<std::size_t>(
          std::ranges::count(observations, false, &std::weak_ptr<void>::expired));
    }

   private:
    std::vector<std::weak_ptr<void>> observations;
  };

  Topic screens;
  Topic wake;
  Topic screensWake;
  Topic monitorBuses;
  Topic keyboards;
  Topic termination;
  OptionalNotes notes;
};

class FakeSession : public Session {
 public:
  static constexpr auto launchAgentFile =
      "/Users/somebody/Library/LaunchAgents/com.quorrel.brivane.plist";

  std::uint32_t userID() override { return user; }
  std::string homeFolder() override { return home; }
  bool fileExists(const std::string& path) override { return files.contains(path); }
  std::optional<double> modificationSeconds(const std::string& path) override {
    return lookUp(files, path).value_or(std::nullopt);
  }
  std::optional<std::string> executablePath() override { return executable; }
  std::vector<std::string> arguments() override { return ownArguments; }
  void openURL(const std::string& url) override { openedURLs.push_back(url); }

  std::uint32_t user = 501;
  std::string home = "/Users/somebody";
  std::optional<std::string> executable = "/Applications/Brivane.app/Contents/MacOS/Brivane";
  /// Files that exist, and when they were modified.
  std::map<std::string, std::optional<double>> files = {{*executable, 1732190000}};
  std::vector<std::string> ownArguments = {"Brivane"};
  std::vector<std::string> openedURLs;
};

class FakeResources : public Resources {
 public:
  std::optional<std::string> read(const std::string& bundle, const std::string& path) override {
    return lookUp(files, bundle + "/" + path);
  }
  std::vector<std::string> preferredLanguages() override { return languages; }

  /// Contents by "<bundle>/<path>".
  std::map<std::string, std::string> files;
  std::vector<std::string> languages = {"en"};
};

class FakeDefaultsSuite : public DefaultsSuite {
 public:
  explicit FakeDefaultsSuite(std::optional<PropertyValue::Dictionary> dictionary)
      : values(std::move(dictionary)) {}

  std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view) override {
    return values;
  }

 private:
  const std::optional<PropertyValue::Dictionary> values;
};

class FakeMachine : public ResidentMachine {
 public:
  FakeMachine();

  Runtime& runtime() override { return time; }
  DisplaySystem& displays() override { return displaySystem; }
  IORegistry& ioRegistry() override { return registry; }
  SymbolLoader& symbols() override { return loader; }
  GammaTables& gammaTables() override { return gamma; }
  UserDefaults& defaults() override { return settings; }
  AccessibilityAccess& accessibility() override { return access; }
  ProcessRunner& processes() override { return processRunner; }
  Applications& applications() override { return apps; }
  SystemLog& log() override { return systemLog; }
  Hotkeys& hotkeys() override { return hotkeyGrabs; }
  EventTaps& eventTaps() override { return taps; }
  Keyboard& keyboard() override { return keys; }
  SystemNotifications& notifications() override { return announcements; }
  Session& session() override { return userSession; }
  Resources& resources() override { return bundles; }
  UserNotices* userNotices() override { return notices; }
  std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) override {
    suiteNotes.add("open suite " + name);
    return std::make_unique<FakeDefaultsSuite>(lookUp(suites, name));
  }

  Observation answerRequests(RemoteCommands& commands) override {
    remoteCommands = &commands;
    return {this, [this](FakeMachine*) { remoteCommands = nullptr; }};
  }

  /// An external monitor with everything it needs to speak DDC/CI: display and screen `id`, named
  /// `name`; panel, proxy and channel at `port`.
  FakeBus::Channel& addMonitor(DisplayID id, const std::string& name, const std::string& port,
                               std::uint32_t vendor, std::uint32_t model, std::uint32_t serial);

  /// Puts the pointer in the middle of the display's screen.
  void pointAt(DisplayID display);

  /// From now on everything that changes something is noted, in one order: gamma tables' writes and
  /// restores, settings, processes, observers, suites, the prompt, the announcement.
  void noteEverything();

  CallNotes notes;
  FakeDisplaySystem displaySystem;
  FakeIORegistry registry;
  FakeSymbolLoader loader;
  FakeGammaTables gamma;
  FakeUserDefaults settings;
  FakeAccessibility access;
  FakeProcessRunner processRunner;
  FakeApplications apps;
  FakeSystemLog systemLog;
  FakeBus bus;
  FakeDisplayServices displayServices;
  FakeHotkeys hotkeyGrabs{notes};
  FakeEventTaps taps{notes, access};
  FakeKeyboard keys;
  FakeNotifications announcements;
  FakeSession userSession;
  FakeResources bundles;
  UserNotices* notices = nullptr;
  /// What other applications stored, by suite.
  std::map<std::string, PropertyValue::Dictionary> suites;
  OptionalNotes suiteNotes;
  /// What other programs can ask for; null while nothing is answered.
  RemoteCommands* remoteCommands = nullptr;
  /// Last, and so the first to end: tasks that are still running then may use all of the above.
  VirtualRuntime time;
};

}  // namespace brivane
