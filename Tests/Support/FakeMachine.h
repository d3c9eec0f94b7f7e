#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"

// A machine for unit tests: each seam is a value that a test sets and looks at, with nothing behind
// it. Calls that matter in their order are also noted, in one common list, with their virtual time.

namespace brivane {

/// "[<virtual milliseconds>] <what>" lines in the order of the calls.
class CallNotes {
 public:
  explicit CallNotes(const Runtime* notedRuntime) : runtime(notedRuntime) {}
  void add(const std::string& what);
  std::vector<std::string> take();

 private:
  const Runtime* runtime;
  std::vector<std::string> lines;
};

struct FakeDisplay {
  DisplayID id = 0;
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
  bool isBuiltIn = false;
};

/// Where a fake that usually keeps its calls to itself notes them, when told to.
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

  /// Adds the display and a 100 x 100 screen for it, to the right of all screens so far.
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
  std::optional<PropertyValue> property(std::string_view key) const override;
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
/// Each channel answers with what its `reply` makes of the last request.
class FakeBus {
 public:
  struct Channel {
    std::int32_t writeStatus = 0;
    std::int32_t readStatus = 0;
    std::uint16_t current = 50;
    std::uint16_t max = 100;
    bool answers = true;
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
  std::int32_t write(Service& service, std::uint32_t chip, std::uint32_t address,
                     std::span<const std::uint8_t> bytes);
  std::int32_t read(Service& service, std::uint32_t chip, std::uint32_t address,
                    std::span<std::uint8_t> bytes);

  CallNotes& notes;
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

  std::uint32_t capacity(DisplayID display) override;
  std::int32_t readTable(DisplayID display, std::span<float> red, std::span<float> green,
                         std::span<float> blue, std::uint32_t& returned) override;
  std::int32_t writeTable(DisplayID display, std::span<const float> red,
                          std::span<const float> green, std::span<const float> blue) override;
  void restoreCalibratedTables() override;

  /// Gives the display a linear table of that size.
  void add(DisplayID display, std::uint32_t entries);

  std::map<DisplayID, Table> tables;
  std::map<DisplayID, std::uint32_t> capacities;
  std::map<DisplayID, std::int32_t> readStatus;
  std::map<DisplayID, std::int32_t> writeStatus;
  /// "capacity <id>", "read <id> <count>", "write <id> <count>", "restore all".
  std::vector<std::string> calls;
  OptionalNotes notes;
};

class FakeUserDefaults : public UserDefaults {
 public:
  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

  PropertyValue::Dictionary values;
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

  /// What the next runs give, in order; the last one stays.
  std::vector<ProcessResult> results;
  /// Executable and arguments of each run.
  std::vector<std::vector<std::string>> runs;
  /// Takes the place of `results` when set.
  std::function<ProcessResult(const std::vector<std::string>& arguments)> tool;
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
  std::map<std::string, std::vector<ProcessID>> running;
  ProcessID ownID = 100;
  bool canAnnounce = true;
  /// Happens while the program announces itself.
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
};

/// Hotkeys that a test presses: `press` and `release` call the installed handler for whatever holds
/// the combination, or was unregistered while it was down. To unregister what isn't registered is a
/// fatal error.
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

  /// Whether somebody holds the combination and was told.
  bool press(std::uint32_t keyCode, std::uint32_t modifiers);
  bool release(std::uint32_t keyCode, std::uint32_t modifiers);
  bool holds(std::uint32_t keyCode, std::uint32_t modifiers) const;

  bool refusesHandler = false;
  Handler handler;
  std::map<HotkeyReference, Registration> registrations;
  /// Combinations (key code, modifiers) that another program has.
  std::set<std::pair<std::uint32_t, std::uint32_t>> taken;
  HotkeyStatus takenStatus = -9878;

 private:
  bool send(HotkeyEvent event, std::uint32_t keyCode, std::uint32_t modifiers);
  bool tell(HotkeyEvent event, HotkeyID hotkey) const;

  CallNotes& notes;
  HotkeyReference nextReference = 1;
  std::set<HotkeyReference> down;
  std::vector<Registration> unregisteredWhileDown;
};

/// One tap at most; `send` gives it an event as the system would.
class FakeEventTaps : public EventTaps {
 public:
  explicit FakeEventTaps(CallNotes& callNotes) : notes(callNotes) {}

  std::unique_ptr<EventTap> createTap(Handler newHandler) override;

  /// Passes without a tap, and, disabling notices apart, with a disabled one.
  TapVerdict send(const TapEvent& event);
  /// A special key's press: `keyType` 2 is brightness up, 3 down; `state` 0x0A is down, 0x0B up.
  TapVerdict sendKey(std::uint32_t keyType, std::uint32_t state = 0x0A);

  bool refuses = false;
  bool exists = false;
  bool isEnabled = false;

 private:
  class Tap;

  CallNotes& notes;
  Handler handler;
};

class FakeKeyboard : public Keyboard {
 public:
  bool hasLayout() override { return layout; }
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override { return flags; }
  bool isKeyDown(std::uint16_t keyCode) override { return keysDown.contains(keyCode); }

  bool layout = true;
  std::map<std::uint16_t, std::string> characters;
  std::uint64_t flags = 0;
  std::set<std::uint16_t> keysDown;
};

/// Announcements that a test makes by calling `announce…`; they reach their observers at once.
class FakeNotifications : public SystemNotifications {
 public:
  Observation observeScreenParameters(Task handler) override {
    notes.add("observe screen parameters");
    return screens.add(handler);
  }
  Observation observeDidWake(Task handler) override {
    notes.add("observe wake");
    return wake.add(handler);
  }
  Observation observeScreensDidWake(Task handler) override {
    notes.add("observe screens' wake");
    return screensWake.add(handler);
  }
  Observation observeTermination(Task handler) override {
    notes.add("observe termination");
    return termination.add(handler);
  }

  class Topic {
   public:
    Observation add(const Task& handler);
    void announce() const;
    std::size_t observerCount() const;

   private:
    std::vector<std::weak_ptr<Task>> observers;
  };

  Topic screens;
  Topic wake;
  Topic screensWake;
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
  std::optional<double> modificationSeconds(const std::string& path) override;
  std::optional<std::string> executablePath() override { return executable; }
  std::vector<std::string> arguments() override { return ownArguments; }
  void openURL(const std::string& url) override { openedURLs.push_back(url); }

  std::uint32_t user = 501;
  std::string home = "/Users/somebody";
  /// Files that exist, and when they were modified.
  std::map<std::string, std::optional<double>> files;
  std::optional<std::string> executable = "/Applications/Brivane.app/Contents/MacOS/Brivane";
  std::vector<std::string> ownArguments = {"Brivane"};
  std::vector<std::string> openedURLs;
};

class FakeResources : public Resources {
 public:
  std::optional<std::string> read(const std::string& bundle, const std::string& path) override;
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
  std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) override;

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
  FakeEventTaps taps{notes};
  FakeKeyboard keys;
  FakeNotifications announcements;
  FakeSession userSession;
  FakeResources bundles;
  /// Suites by name; one without a dictionary has no domain.
  std::map<std::string, std::optional<PropertyValue::Dictionary>> suites;
  OptionalNotes suiteNotes;
  /// Last, and so the first to end: tasks that are still running then may use all of the above.
  VirtualRuntime time;
};

}  // namespace brivane
