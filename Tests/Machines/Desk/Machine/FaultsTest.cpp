#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "Machines/Desk/File/FaultCalls.h"
#include "Tests/Support/SystemLibraries.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;

/// Makes the call once on a machine; whether it failed as its contract says a call fails.
using Call = std::function<bool(DeskMachine&)>;

const PropertyValue seven = {std::int64_t{7}};

std::shared_ptr<const RegistryEntry> entryOfClass(DeskMachine& machine, std::string_view wanted) {
  const auto walk = machine.ioRegistry().allServices();
  while (auto entry = walk->next()) {
    if (entry->className() == wanted) return entry;
  }
  ADD_FAILURE() << "no entry of class " << wanted;
  return nullptr;
}

/// The entry that the counted calls are made on; found without making any of them.
std::shared_ptr<const RegistryEntry> second(DeskMachine& machine) {
  const auto walk = machine.ioRegistry().allServices();
  walk->next();
  return walk->next();
}

template <typename Function>
Function function(DeskMachine& machine, const char* library, const char* name) {
  return std::get<Function>(
      machine.symbols().find(machine.symbols().open(library, lazyBinding), name));
}

std::shared_ptr<AVService> service(DeskMachine& machine) {
  return function<CreateAVServiceFunction>(
      machine, ioKit, "IOAVServiceCreateWithService")(*entryOfClass(machine, "DCPAVServiceProxy"));
}

bool createFails(DeskMachine& machine) {
  return service(machine) == nullptr;
}

bool writeI2CFails(DeskMachine& machine) {
  const std::array<std::uint8_t, 4> get = {0x82, 0x01, 0x10, 0xFD};
  return function<WriteI2CFunction>(machine, ioKit, "IOAVServiceWriteI2C")(*service(machine), 0x37,
                                                                           0x51, get) != 0;
}

bool readI2CFails(DeskMachine& machine) {
  std::array<std::uint8_t, 12> bytes{};
  return function<ReadI2CFunction>(machine, ioKit, "IOAVServiceReadI2C")(*service(machine), 0x37,
                                                                         0x51, bytes) != 0;
}

bool getBrightnessFails(DeskMachine& machine) {
  float level = -1;
  const auto status = function<GetBrightnessFunction>(machine, displayServices,
                                                      "DisplayServicesGetBrightness")(1, level);
  EXPECT_EQ(status == 0, level >= 0) << "a failing call writes nothing";
  return status != 0;
}

bool setBrightnessFails(DeskMachine& machine) {
  return function<SetBrightnessFunction>(machine, displayServices, "DisplayServicesSetBrightness")(
             1, 0.5F) != 0;
}

bool canChangeBrightnessFails(DeskMachine& machine) {
  return !function<CanChangeBrightnessFunction>(machine, displayServices,
                                                "DisplayServicesCanChangeBrightness")(1);
}

bool readTableFails(DeskMachine& machine) {
  std::array<float, 2> samples{};
  std::uint32_t returned = 0;
  return machine.gammaTables().readTable(1, samples, samples, samples, returned) != 0;
}

bool writeTableFails(DeskMachine& machine) {
  const std::array<float, 2> samples = {0, 1};
  return machine.gammaTables().writeTable(1, samples, samples, samples) != 0;
}

bool restoreFails(DeskMachine& machine) {
  const std::array<float, 2> dark = {0, 0.5F};
  machine.gammaTables().writeTable(1, dark, dark, dark);
  machine.gammaTables().restoreCalibratedTables();
  return machine.hardware().gamma.table(1)->front().back() == 0.5F;
}

bool runFails(DeskMachine& machine) {
  return std::holds_alternative<ProcessNotStarted>(
      machine.processes().run("/usr/bin/hidutil", {"property", "--get", "UserKeyMapping"}));
}

bool findFails(DeskMachine& machine) {
  return std::holds_alternative<std::monostate>(
      machine.symbols().find(machine.symbols().open(ioKit, lazyBinding), "IOAVServiceReadI2C"));
}

/// Whether a change of a setting stayed in this program, as another one sees it.
bool staysInProgram(DeskMachine& machine, const std::optional<PropertyValue>& value) {
  EXPECT_EQ(machine.defaults().object("key"), value) << "it is in force here in any case";
  return machine.hardware().domains.open("com.quorrel.brivane")->object("key") != value;
}

bool setFails(DeskMachine& machine) {
  machine.hardware().domains.open("com.quorrel.brivane")->remove("key");
  machine.defaults().set("key", seven);
  return staysInProgram(machine, seven);
}

bool removeFails(DeskMachine& machine) {
  machine.hardware().domains.open("com.quorrel.brivane")->set("key", seven);
  machine.defaults().remove("key");
  return staysInProgram(machine, std::nullopt);
}

// Keyboard

constexpr HotkeyID hotkey = {1, 2};

/// Whether a press of F13 is somebody's hotkey, and nothing is left behind.
bool isTaken(DeskMachine& machine) {
  bool isUnclaimed = false;
  machine.keyboard().onUnclaimedKey = [&](const UnclaimedKey&) { isUnclaimed = true; };
  machine.keyboard().pressKey(105);
  machine.keyboard().releaseKey(105);
  machine.keyboard().onUnclaimedKey = nullptr;
  return !isUnclaimed;
}

bool installHandlerFails(DeskMachine& machine) {
  return !machine.hotkeys().installHandler([](HotkeyEvent, HotkeyID) {});
}

bool removeHandlerFails(DeskMachine& machine) {
  int calls = 0;
  machine.hotkeys().installHandler([&](HotkeyEvent, HotkeyID) { ++calls; });
  const auto reference =
      std::get<HotkeyReference>(machine.hotkeys().registerHotkey(105, 0, hotkey));
  machine.hotkeys().removeHandler();
  isTaken(machine);
  machine.hotkeys().unregisterHotkey(reference);
  return calls > 0;
}

bool registerHotkeyFails(DeskMachine& machine) {
  const auto result = machine.hotkeys().registerHotkey(105, 0, hotkey);
  const auto* const reference = std::get_if<HotkeyReference>(&result);
  EXPECT_EQ(isTaken(machine), reference != nullptr);
  if (reference != nullptr) machine.hotkeys().unregisterHotkey(*reference);
  return reference == nullptr;
}

bool unregisterHotkeyFails(DeskMachine& machine) {
  const auto reference =
      std::get<HotkeyReference>(machine.hotkeys().registerHotkey(105, 0, hotkey));
  machine.hotkeys().unregisterHotkey(reference);
  const bool failed = isTaken(machine);
  machine.hardware().input.hotkeys.remove(reference);
  return failed;
}

bool createTapFails(DeskMachine& machine) {
  return machine.eventTaps().createTap([](const TapEvent&) { return TapVerdict::passThrough; }) ==
         nullptr;
}

bool setEnabledFails(DeskMachine& machine) {
  int seen = 0;
  const auto tap = machine.eventTaps().createTap([&](const TapEvent&) {
    ++seen;
    return TapVerdict::swallow;
  });
  tap->setEnabled(true);
  machine.keyboard().pressBrightness(BrightnessKey::up);
  machine.keyboard().releaseBrightness(BrightnessKey::up);
  return seen == 0;
}

bool modifierFlagsFails(DeskMachine& machine) {
  machine.keyboard().pressKey(56);
  return machine.keyboard().modifierFlags() == 0;
}

bool isKeyDownFails(DeskMachine& machine) {
  machine.keyboard().pressKey(105);
  return !machine.keyboard().isKeyDown(105);
}

// Notifications

using Observe = Observation (SystemNotifications::*)(Task handler);

/// Whether whoever observes so hears nothing of what happens then.
bool staysUnheard(DeskMachine& machine, Observe observe) {
  int heard = 0;
  const auto observation = (machine.notifications().*observe)([&] { ++heard; });
  machine.hardware().events.announce(HardwareNotice::screenParameters);
  machine.hardware().events.announce(HardwareNotice::didWake);
  machine.hardware().events.announce(HardwareNotice::screensDidWake);
  machine.notifications().askToEnd();
  static_cast<VirtualRuntime&>(machine.runtime()).settle();
  EXPECT_LE(heard, 1);
  return heard == 0;
}

// Session

constexpr auto program = "/Applications/Brivane.app/Contents/MacOS/Brivane";

bool openURLFails(DeskMachine& machine) {
  const auto before = machine.session().openedURLs().size();
  machine.session().openURL("example:");
  return machine.session().openedURLs().size() == before;
}

bool persistentDomainFails(DeskMachine& machine) {
  return !machine.openDefaultsSuite("com.quorrel.tallowin")
              ->persistentDomain("com.quorrel.tallowin");
}

const std::map<std::string_view, Call>& calls() {
  static const std::map<std::string_view, Call> all = {
      {"AVService.create", createFails},
      {"AVService.readI2C", readI2CFails},
      {"AVService.writeI2C", writeI2CFails},
      {"AccessibilityAccess.isTrusted", [](auto& m) { return !m.accessibility().isTrusted(); }},
      {"AccessibilityAccess.requestTrust",
       [](auto& m) { return !m.accessibility().requestTrust(); }},
      {"Applications.announce", [](auto& m) { return !m.applications().announce(); }},
      {"Applications.bundleIdentifier",
       [](auto& m) { return !m.applications().bundleIdentifier(); }},
      {"Applications.runningApplications",
       [](auto& m) { return m.applications().runningApplications("org.example.other").empty(); }},
      {"DefaultsSuite.persistentDomain", persistentDomainFails},
      {"DisplayServices.canChangeBrightness", canChangeBrightnessFails},
      {"DisplayServices.getBrightness", getBrightnessFails},
      {"DisplayServices.setBrightness", setBrightnessFails},
      {"DisplaySystem.isBuiltIn", [](auto& m) { return !m.displays().isBuiltIn(1); }},
      {"DisplaySystem.mainScreen", [](auto& m) { return !m.displays().mainScreen(); }},
      {"DisplaySystem.onlineDisplayCount",
       [](auto& m) { return !m.displays().onlineDisplayCount(); }},
      {"DisplaySystem.onlineDisplayList",
       [](auto& m) { return !m.displays().onlineDisplayList(9); }},
      {"DisplaySystem.panelIdentity",
       [](auto& m) { return m.displays().panelIdentity(1) == PanelIdentity{}; }},
      {"DisplaySystem.pointerPosition",
       [](auto& m) { return m.displays().pointerPosition().x < -1e6; }},
      {"DisplaySystem.screens", [](auto& m) { return m.displays().screens().empty(); }},
      {"EventTap.setEnabled", setEnabledFails},
      {"EventTaps.createTap", createTapFails},
      {"GammaTables.capacity", [](auto& m) { return m.gammaTables().capacity(1) == 0; }},
      {"GammaTables.readTable", readTableFails},
      {"GammaTables.restoreCalibratedTables", restoreFails},
      {"GammaTables.writeTable", writeTableFails},
      {"Hotkeys.installHandler", installHandlerFails},
      {"Hotkeys.registerHotkey", registerHotkeyFails},
      {"Hotkeys.removeHandler", removeHandlerFails},
      {"Hotkeys.unregisterHotkey", unregisterHotkeyFails},
      {"IORegistry.allServices", [](auto& m) { return m.ioRegistry().allServices() == nullptr; }},
      {"Keyboard.baseCharacter", [](auto& m) { return !m.keyboard().baseCharacter(0); }},
      {"Keyboard.hasLayout", [](auto& m) { return !m.keyboard().hasLayout(); }},
      {"Keyboard.isKeyDown", isKeyDownFails},
      {"Keyboard.modifierFlags", modifierFlagsFails},
      {"ProcessRunner.run", runFails},
      {"RegistryEntry.className", [](auto& m) { return !second(m)->className(); }},
      {"RegistryEntry.name", [](auto& m) { return !second(m)->name(); }},
      {"RegistryEntry.parent", [](auto& m) { return second(m)->parent() == nullptr; }},
      {"RegistryEntry.property",
       [](auto& m) { return !entryOfClass(m, "DCPAVServiceProxy")->property("Location"); }},
      {"RegistryIterator.next",
       [](auto& m) { return m.ioRegistry().allServices()->next() == nullptr; }},
      {"ResidentMachine.openDefaultsSuite",
       [](auto& m) { return m.openDefaultsSuite("com.quorrel.tallowin") == nullptr; }},
      {"Resources.preferredLanguages",
       [](auto& m) { return m.resources().preferredLanguages().empty(); }},
      {"Resources.read", [](auto& m) { return !m.resources().read("A.bundle", "file"); }},
      {"Session.arguments", [](auto& m) { return m.session().arguments().empty(); }},
      {"Session.executablePath", [](auto& m) { return !m.session().executablePath(); }},
      {"Session.fileExists", [](auto& m) { return !m.session().fileExists(program); }},
      {"Session.modificationSeconds",
       [](auto& m) { return !m.session().modificationSeconds(program); }},
      {"Session.openURL", openURLFails},
      {"SymbolLoader.find", findFails},
      {"SymbolLoader.open", [](auto& m) { return m.symbols().open(ioKit, lazyBinding) == 0; }},
      {"SystemNotifications.observeDidWake",
       [](auto& m) { return staysUnheard(m, &SystemNotifications::observeDidWake); }},
      {"SystemNotifications.observeScreenParameters",
       [](auto& m) { return staysUnheard(m, &SystemNotifications::observeScreenParameters); }},
      {"SystemNotifications.observeScreensDidWake",
       [](auto& m) { return staysUnheard(m, &SystemNotifications::observeScreensDidWake); }},
      {"SystemNotifications.observeTermination",
       [](auto& m) { return staysUnheard(m, &SystemNotifications::observeTermination); }},
      {"UserDefaults.object", [](auto& m) { return !m.defaults().object("stored"); }},
      {"UserDefaults.remove", removeFails},
      {"UserDefaults.set", setFails},
  };
  return all;
}

std::string deskWith(const std::string& faults) {
  return R"({"displays": [{"identifier": 1, "builtIn": true, "serial": 5, "firmware": {}}],
             "applications": [{"bundleIdentifier": "org.example.other"}],
             "defaults": {"com.quorrel.brivane": {"stored": 1}, "com.quorrel.tallowin": {}},
             "faults": {)" +
         faults + "}}";
}

class FaultsOfEachCall : public testing::TestWithParam<std::string_view> {};

TEST_P(FaultsOfEachCall, StrikeAtTheSecondAndFourthCallAndAtNoOther) {
  const auto found = calls().find(GetParam());
  ASSERT_NE(found, calls().end()) << "this call has no test";
  TestDesk desk(deskWith("\"" + std::string(GetParam()) + "\": [2, 4]"));
  std::filesystem::create_directory(desk.bundles / "A.bundle");
  desk.bundles.write("A.bundle/file", "content");
  std::vector<bool> failed;
  for (int occurrence = 1; occurrence <= 5; ++occurrence) {
    failed.push_back(found->second(*desk.machine));
  }
  EXPECT_THAT(failed, ElementsAre(false, true, false, true, false));
}

INSTANTIATE_TEST_SUITE_P(MachineSeam, FaultsOfEachCall, testing::ValuesIn([] {
                           auto names = faultCalls();
                           std::erase(names, "SystemLog.write");
                           return names;
                         }()),
                         [](const auto& parameter) {
                           std::string name(parameter.param);
                           std::erase(name, '.');
                           return name;
                         });

TEST(Faults, LoseALineOfTheLog) {
  TestDesk desk(deskWith(R"("SystemLog.write": [2])"));
  for (const auto* line : {"one", "two", "three"}) desk.machine->log().write(line);
  EXPECT_THAT(*desk.lines, ElementsAre("one", "three"));
}

TEST(Faults, OfASettingAreSaidInTheLogAndEndWithTheNextChange) {
  TestDesk desk(deskWith(R"("UserDefaults.set": [1])"));
  desk.machine->defaults().set("key", seven);
  EXPECT_THAT(*desk.lines, ElementsAre("Brivane: the setting key could not be saved; it stays in "
                                       "force until Brivane ends"));
  const auto other = desk.makeMachine();
  EXPECT_EQ(other->defaults().object("key"), std::nullopt);
  desk.machine->defaults().set("key", {true});
  EXPECT_EQ(other->defaults().object("key"), PropertyValue{true});
  EXPECT_EQ(desk.machine->defaults().object("key"), PropertyValue{true});
}

TEST(Faults, AreTracedAndSoIsEveryCallWhenAskedFor) {
  TestDesk desk(deskWith(R"("DisplaySystem.screens": [2])"));
  const auto traced = desk.trace();
  std::vector<std::string> made;
  desk.machine->setCallTrace([&](std::string_view call, bool fails) {
    made.push_back(std::string(call) + (fails ? " fails" : ""));
  });
  desk.machine->displays().screens();
  desk.machine->gammaTables().capacity(1);
  desk.machine->displays().screens();
  EXPECT_THAT(made, ElementsAre("DisplaySystem.screens", "GammaTables.capacity",
                                "DisplaySystem.screens fails"));
  EXPECT_THAT(*traced, ElementsAre("fault DisplaySystem.screens"));
}

TEST(Faults, OfAWriteAreTracedWithWhatWasRefused) {
  TestDesk desk(deskWith(R"("AVService.writeI2C": [1], "GammaTables.writeTable": [1],
      "DisplayServices.setBrightness": [1], "UserDefaults.set": [1], "UserDefaults.remove": [1])"));
  auto& machine = *desk.machine;
  const auto traced = desk.trace();
  writeI2CFails(machine);
  const std::vector<float> curve = {0, 0.5F};
  machine.gammaTables().writeTable(1, curve, curve, curve);
  setBrightnessFails(machine);
  machine.defaults().set("Some", seven);
  machine.defaults().remove("Other");
  std::erase_if(*traced, [](const std::string& line) { return !line.starts_with("fault "); });
  EXPECT_THAT(*traced,
              ElementsAre("fault AVService.writeI2C: bus 1 write 82 01 10 FD",
                          testing::MatchesRegex("fault GammaTables.writeTable: gamma 1 2 samples, "
                                                "digest [0-9A-F]{16}, peak 0.5"),
                          "fault DisplayServices.setBrightness: display-services 1 level 0.5",
                          "fault UserDefaults.set: setting Some = 7",
                          "fault UserDefaults.remove: setting Other removed"));
}

TEST(Faults, NamesAreSorted) {
  EXPECT_TRUE(std::ranges::is_sorted(faultCalls()));
}

TEST(Faults, AreCountedForEachProgram) {
  TestDesk desk(deskWith(R"("DisplaySystem.screens": [1])"));
  const auto other = desk.makeMachine();
  EXPECT_TRUE(desk.machine->displays().screens().empty());
  EXPECT_TRUE(other->displays().screens().empty());
  EXPECT_FALSE(other->displays().screens().empty());
}

TEST(Faults, DoNotReachTheHardware) {
  TestDesk desk(deskWith(R"("AVService.writeI2C": [1], "DisplayServices.setBrightness": [1])"));
  const auto before = desk.hardware->monitors.state(1);
  EXPECT_TRUE(writeI2CFails(*desk.machine));
  EXPECT_EQ(desk.hardware->monitors.state(1), before);
  EXPECT_FALSE(writeI2CFails(*desk.machine));
  EXPECT_NE(desk.hardware->monitors.state(1), before);
}

}  // namespace
}  // namespace brivane
