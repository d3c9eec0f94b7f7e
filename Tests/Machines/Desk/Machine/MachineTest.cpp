#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "Machines/Desk/Machine/Machine.h"
#include "Tests/Support/SystemLibraries.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Displays

TEST(DeskMachine, ListsScreensAsTheDeskFileHasThem) {
  TestDesk desk(R"({"displays": [
      {"identifier": 3, "name": "Left", "headroom": 2},
      {"identifier": 4, "name": "Middle", "screen": "unnumbered"},
      {"identifier": 5, "name": "Right", "screen": "none"}]})");
  auto& displays = desk.machine->displays();
  EXPECT_THAT(*displays.onlineDisplayList(10), ElementsAre(3u, 4u, 5u));
  const auto screens = displays.screens();
  ASSERT_THAT(screens, SizeIs(2));
  EXPECT_EQ(screens[0].number, 3u);
  EXPECT_EQ(screens[0].localizedName, "Left");
  EXPECT_EQ(screens[0].potentialHeadroom, 2.0);
  EXPECT_EQ(screens[1].number, std::nullopt);
  EXPECT_EQ(screens[1].frame, (Rect{1920, 0, 1920, 1080}));
  EXPECT_EQ(screens[1].potentialHeadroom, 1.0);
}

TEST(DeskMachine, FollowsThePointer) {
  TestDesk desk(R"({"displays": [{"identifier": 3}], "pointer": {"x": 1, "y": 2}})");
  EXPECT_EQ(desk.machine->displays().pointerPosition(), (Point{1, 2}));
  desk.hardware->system.movePointer({5, 6});
  EXPECT_EQ(desk.machine->displays().pointerPosition(), (Point{5, 6}));
}

// The registry

class DeskRegistryTest : public testing::Test {
 protected:
  using Entry = std::shared_ptr<const RegistryEntry>;

  /// The entries of a desk with one monitor whose "registry" is `quirks`.
  static std::vector<Entry> entries(const std::string& quirks, const std::string& more = "") {
    TestDesk desk(R"({"displays": [{"identifier": 3, "vendor": 11, "model": 12, "serial": 13,
        "registry": )" +
                  quirks + more + "}]}");
    std::vector<Entry> all;
    const auto walk = desk.machine->ioRegistry().allServices();
    while (auto entry = walk->next()) all.push_back(entry);
    return all;
  }

  static Entry panel(const std::string& quirks, const std::string& more = "") {
    for (const auto& entry : entries(quirks, more)) {
      if (entry->name() == "panel") return entry;
    }
    return nullptr;
  }

  static Entry proxy(const std::string& quirks, const std::string& more = "") {
    for (const auto& entry : entries(quirks, more)) {
      if (entry->className() == "DCPAVServiceProxy") return entry;
    }
    return nullptr;
  }

  static PropertyValue::Dictionary product(const std::string& quirks,
                                           const std::string& more = "") {
    return *panel(quirks, more)
                ->property("DisplayAttributes")
                ->dictionary()
                ->at("ProductAttributes")
                .dictionary();
  }

  static std::vector<std::string> namesAbove(Entry entry) {
    std::vector<std::string> names;
    while ((entry = entry->parent())) names.push_back(*entry->name());
    return names;
  }
};

TEST_F(DeskRegistryTest, APanelSaysWhatItIs) {
  EXPECT_EQ(product("{}"), (PropertyValue::Dictionary{{"LegacyManufacturerID", {std::int64_t{11}}},
                                                      {"ProductID", {std::int64_t{12}}},
                                                      {"SerialNumber", {std::int64_t{13}}}}));
}

TEST_F(DeskRegistryTest, APanelWithoutASerialNumberLacksTheKey) {
  TestDesk desk(R"({"displays": [{"identifier": 3}]})");
  const auto walk = desk.machine->ioRegistry().allServices();
  while (const auto entry = walk->next()) {
    const auto attributes = entry->property("DisplayAttributes");
    if (!attributes) continue;
    EXPECT_FALSE(
        attributes->dictionary()->at("ProductAttributes").dictionary()->contains("SerialNumber"));
    return;
  }
  FAIL() << "no panel";
}

TEST_F(DeskRegistryTest, QuirksRemoveOrReplaceWhatAPanelSays) {
  EXPECT_EQ(panel(R"({"DisplayAttributes": null})")->property("DisplayAttributes"), std::nullopt);
  EXPECT_EQ(panel(R"({"DisplayAttributes": 5})")->property("DisplayAttributes"),
            PropertyValue{std::int64_t{5}});
  EXPECT_EQ(panel(R"({"ProductAttributes": null})")->property("DisplayAttributes"),
            PropertyValue{PropertyValue::Dictionary{}});
  EXPECT_FALSE(product(R"({"LegacyManufacturerID": null})").contains("LegacyManufacturerID"));
  EXPECT_EQ(product(R"({"ProductID": "twelve"})").at("ProductID"),
            PropertyValue{std::string("twelve")});
  EXPECT_FALSE(product(R"({"SerialNumber": null})").contains("SerialNumber"));
  EXPECT_EQ(product(R"({"SerialNumber": 1.5})").at("SerialNumber"), PropertyValue{1.5});
}

TEST_F(DeskRegistryTest, ThePortIsAFewStepsAboveThePanel) {
  EXPECT_THAT(namesAbove(panel("{}")), ElementsAre("link-1", "dispext0", "desk", "Root"));
  EXPECT_THAT(namesAbove(panel(R"({"panelDepth": 1})")), ElementsAre("dispext0", "desk", "Root"));
  const auto deep = namesAbove(panel(R"({"panelDepth": 9})"));
  EXPECT_EQ(deep.at(8), "dispext0");
  EXPECT_THAT(namesAbove(panel(R"({"panelController": "soc"})")),
              ElementsAre("link-1", "soc", "desk", "Root"));
}

TEST_F(DeskRegistryTest, TheProxysParentIsThePortOrWhatTheDeskFileSays) {
  EXPECT_THAT(namesAbove(proxy("{}")), ElementsAre("dispext0", "desk", "Root"));
  EXPECT_THAT(namesAbove(proxy(R"({"proxyParent": "dispext0:av"})")),
              ElementsAre("dispext0:av", "desk", "Root"));
  EXPECT_EQ(proxy(R"({"proxy": false})"), nullptr);
}

TEST_F(DeskRegistryTest, TheProxySaysWhereItsPanelIs) {
  EXPECT_EQ(proxy("{}")->property("Location"), PropertyValue{std::string("External")});
  EXPECT_EQ(proxy("{}", R"(, "builtIn": true)")->property("Location"),
            PropertyValue{std::string("Embedded")});
  EXPECT_EQ(proxy(R"({"Location": null})")->property("Location"), std::nullopt);
  EXPECT_EQ(proxy(R"({"Location": 1})")->property("Location"), PropertyValue{std::int64_t{1}});
}

TEST_F(DeskRegistryTest, AnEntryStaysReadableAfterItsMachineIsGone) {
  EXPECT_EQ(proxy("{}")->className(), "DCPAVServiceProxy");
}

TEST_F(DeskRegistryTest, TwoDisplaysMayShareAPort) {
  TestDesk desk(R"({"displays": [{"identifier": 3, "port": "dispext5"},
                                 {"identifier": 4, "port": "dispext5"}]})");
  const auto walk = desk.machine->ioRegistry().allServices();
  int proxies = 0;
  while (const auto entry = walk->next()) {
    if (entry->className() != "DCPAVServiceProxy") continue;
    ++proxies;
    EXPECT_EQ(entry->parent()->name(), "dispext5");
  }
  EXPECT_EQ(proxies, 2);
}

// Entry points

class DeskSymbolsTest : public testing::Test {
 protected:
  explicit DeskSymbolsTest(const std::string& text = "{}") : desk(text) {}

  /// Where a name is found: "library", "global", both, or nothing.
  static std::string places(DeskMachine& machine, const char* library, const char* name) {
    std::string found;
    auto& symbols = machine.symbols();
    const auto handle = symbols.open(library, lazyBinding);
    if (handle != 0 && symbols.find(handle, name).index() != 0) found += "library ";
    if (symbols.find(globalNamespace, name).index() != 0) found += "global ";
    return found;
  }

  TestDesk desk;
};

TEST_F(DeskSymbolsTest, NamesAreFoundInTheirOwnLibraryAndNowhereElse) {
  for (const auto* name :
       {"IOAVServiceCreateWithService", "IOAVServiceWriteI2C", "IOAVServiceReadI2C"}) {
    EXPECT_EQ(places(*desk.machine, ioKit, name), "library ") << name;
    EXPECT_EQ(places(*desk.machine, displayServices, name), "") << name;
  }
  for (const auto* name : {"DisplayServicesGetBrightness", "DisplayServicesSetBrightness",
                           "DisplayServicesCanChangeBrightness"}) {
    EXPECT_EQ(places(*desk.machine, displayServices, name), "library ") << name;
    EXPECT_EQ(places(*desk.machine, ioKit, name), "") << name;
  }
}

TEST_F(DeskSymbolsTest, NamesAreFoundWhereTheDeskFileSays) {
  TestDesk odd(R"({"libraries": {
      "IOKit": {"symbols": {"IOAVServiceCreateWithService": "global",
                            "IOAVServiceWriteI2C": "everywhere",
                            "IOAVServiceReadI2C": "nowhere"}},
      "DisplayServices": {"opens": false,
                          "symbols": {"DisplayServicesGetBrightness": "everywhere"}}}})");
  EXPECT_EQ(places(*odd.machine, ioKit, "IOAVServiceCreateWithService"), "global ");
  EXPECT_EQ(places(*odd.machine, ioKit, "IOAVServiceWriteI2C"), "library global ");
  EXPECT_EQ(places(*odd.machine, ioKit, "IOAVServiceReadI2C"), "");
  EXPECT_EQ(places(*odd.machine, displayServices, "DisplayServicesGetBrightness"), "global ");
  EXPECT_EQ(places(*odd.machine, displayServices, "DisplayServicesSetBrightness"), "");
}

/// A desk of one monitor, its proxy's service, and the two calls on it.
class DeskBusTest : public testing::Test {
 protected:
  explicit DeskBusTest()
      : desk(R"({"displays": [{"identifier": 3, "firmware": {"level": 50,
                                    "replyMilliseconds": 30}}]})") {
    auto& symbols = desk.machine->symbols();
    const auto library = symbols.open(ioKit, lazyBinding);
    create =
        std::get<CreateAVServiceFunction>(symbols.find(library, "IOAVServiceCreateWithService"));
    write = std::get<WriteI2CFunction>(symbols.find(library, "IOAVServiceWriteI2C"));
    read = std::get<ReadI2CFunction>(symbols.find(library, "IOAVServiceReadI2C"));
  }

  std::shared_ptr<AVService> service(DeskMachine& machine) {
    const auto walk = machine.ioRegistry().allServices();
    while (const auto entry = walk->next()) {
      if (entry->className() == "DCPAVServiceProxy") return create(*entry);
    }
    return nullptr;
  }

  TestDesk desk;
  CreateAVServiceFunction create;
  WriteI2CFunction write;
  ReadI2CFunction read;
};

TEST_F(DeskBusTest, CarriesBytesToTheMonitorAndBackInTheMachinesTime) {
  const auto monitor = service(*desk.machine);
  const std::array<std::uint8_t, 4> get = {0x82, 0x01, 0x10, 0xFD};
  std::array<std::uint8_t, 12> bytes{};
  EXPECT_EQ(write(*monitor, 0x37, 0x51, get), 0);
  desk.machine->runtime().sleep(std::chrono::milliseconds(29));
  EXPECT_EQ(read(*monitor, 0x37, 0x51, bytes), 0);
  EXPECT_EQ(bytes[1], 0x80);
  desk.machine->runtime().sleep(std::chrono::milliseconds(1));
  EXPECT_EQ(read(*monitor, 0x37, 0x51, bytes), 0);
  EXPECT_EQ(bytes[1], 0x88);
  EXPECT_EQ(bytes[9], 50);
}

TEST_F(DeskBusTest, GivesNoServiceForAnythingButAProxy) {
  const auto walk = desk.machine->ioRegistry().allServices();
  while (const auto entry = walk->next()) {
    EXPECT_EQ(create(*entry) != nullptr, entry->className() == "DCPAVServiceProxy");
  }
}

TEST_F(DeskBusTest, GivesNoServiceWhereTheDeskFileSaysSo) {
  TestDesk odd(R"({"displays": [{"identifier": 3, "registry": {"service": false}}]})");
  EXPECT_EQ(service(*odd.machine), nullptr);
}

TEST_F(DeskBusTest, RefusesAServiceOfAnotherMachine) {
  AVService stranger;
  std::array<std::uint8_t, 4> bytes{};
  EXPECT_NE(write(stranger, 0x37, 0x51, bytes), 0);
  EXPECT_NE(read(stranger, 0x37, 0x51, bytes), 0);
}

TEST_F(DeskBusTest, BehindAnAdapterNothingAnswers) {
  TestDesk adapter(R"({"displays": [{"identifier": 3, "firmware": null}]})");
  auto& symbols = adapter.machine->symbols();
  const auto library = symbols.open(ioKit, lazyBinding);
  const auto service = this->service(*adapter.machine);
  ASSERT_NE(service, nullptr);
  std::array<std::uint8_t, 4> bytes{};
  EXPECT_NE(std::get<WriteI2CFunction>(symbols.find(library, "IOAVServiceWriteI2C"))(*service, 0x37,
                                                                                     0x51, bytes),
            0);
}

TEST_F(DeskSymbolsTest, DisplayServicesGetAndSetThePanelsLevel) {
  TestDesk panels(R"({"displays": [{"identifier": 1, "builtIn": true},
      {"identifier": 2, "displayServices": {"level": 0.25, "canChange": false}},
      {"identifier": 3}]})");
  auto& symbols = panels.machine->symbols();
  const auto library = symbols.open(displayServices, lazyBinding);
  const auto get =
      std::get<GetBrightnessFunction>(symbols.find(library, "DisplayServicesGetBrightness"));
  const auto set =
      std::get<SetBrightnessFunction>(symbols.find(library, "DisplayServicesSetBrightness"));
  const auto canChange = std::get<CanChangeBrightnessFunction>(
      symbols.find(library, "DisplayServicesCanChangeBrightness"));
  float level = -1;
  EXPECT_EQ(get(1, level), 0);
  EXPECT_EQ(level, 0.5F);
  EXPECT_EQ(set(1, 0.75F), 0);
  EXPECT_EQ(get(1, level), 0);
  EXPECT_EQ(level, 0.75F);
  EXPECT_TRUE(canChange(1));
  EXPECT_EQ(get(2, level), 0);
  EXPECT_EQ(level, 0.25F);
  EXPECT_FALSE(canChange(2));
  EXPECT_NE(set(2, 0.5F), 0);
  level = -1;
  for (const DisplayID other : {3u, 99u}) {
    EXPECT_NE(get(other, level), 0);
    EXPECT_NE(set(other, 0.5F), 0);
    EXPECT_FALSE(canChange(other));
  }
  EXPECT_EQ(level, -1.0F) << "a failing get writes nothing";
}

// Gamma

TEST(DeskGammaTables, FillAsManySamplesAsFit) {
  TestDesk desk(R"({"displays": [{"identifier": 3, "gamma": {"capacity": 5}}]})");
  auto& gamma = desk.machine->gammaTables();
  std::vector<float> red(7, -1);
  std::vector<float> others(7, -1);
  std::uint32_t returned = 0;
  EXPECT_EQ(gamma.readTable(3, red, others, others, returned), 0);
  EXPECT_EQ(returned, 5u);
  EXPECT_THAT(red, ElementsAre(0, 0.25F, 0.5F, 0.75F, 1, -1, -1));
  red.assign(2, -1);
  EXPECT_EQ(gamma.readTable(3, red, others, others, returned), 0);
  EXPECT_EQ(returned, 2u);
  EXPECT_THAT(red, ElementsAre(0, 0.25F));
}

TEST(DeskGammaTables, RefuseAnInvalidTable) {
  TestDesk desk(R"({"displays": [{"identifier": 3, "gamma": {"capacity": 3}}]})");
  auto& gamma = desk.machine->gammaTables();
  const std::vector<float> three = {0, 0.1F, 0.2F};
  const std::vector<float> two = {0, 0.1F};
  EXPECT_NE(gamma.writeTable(3, three, two, three), 0);
  EXPECT_NE(gamma.writeTable(3, three, three, two), 0);
  EXPECT_NE(gamma.writeTable(3, {}, {}, {}), 0);
  EXPECT_NE(gamma.writeTable(4, two, two, two), 0);
  EXPECT_EQ(desk.hardware->gamma.table(3)->front(), (GammaCurve{0, 0.5F, 1}));
  EXPECT_EQ(gamma.writeTable(3, two, two, two), 0);
}

// The rest

TEST(DeskMachine, HasTheGrantOfTheDeskFile) {
  EXPECT_TRUE(TestDesk("{}").machine->accessibility().isTrusted());
  EXPECT_FALSE(
      TestDesk(R"({"grants": {"accessibility": false}})").machine->accessibility().isTrusted());
}

TEST(DeskMachine, ListsTheApplicationsOfTheDeskFile) {
  TestDesk desk(R"({"applications": [
      {"bundleIdentifier": "com.quorrel.brivane", "processID": 77},
      {"bundleIdentifier": "org.example.other"},
      {"bundleIdentifier": "com.quorrel.brivane", "processID": 42}]})");
  auto& applications = desk.machine->applications();
  EXPECT_EQ(applications.bundleIdentifier(), "com.quorrel.brivane");
  EXPECT_THAT(applications.runningApplications("com.quorrel.brivane"), ElementsAre(77, 42));
  EXPECT_THAT(applications.runningApplications("org.example.other"), SizeIs(1));
  EXPECT_THAT(applications.runningApplications("org.example.nobody"), IsEmpty());
  EXPECT_GT(applications.ownProcessID(), 0);
  TestDesk bare(R"({"bundleIdentifier": null})");
  EXPECT_EQ(bare.machine->applications().bundleIdentifier(), std::nullopt);
}

TEST(DeskMachine, SharesItsSettingsWithOtherProgramsOnTheDesk) {
  TestDesk desk(R"({"defaults": {"com.quorrel.brivane": {"a": 1},
                                 "com.quorrel.tallowin": {"a": 2}}})");
  const auto other = desk.makeMachine();
  EXPECT_EQ(desk.machine->defaults().object("a"), PropertyValue{std::int64_t{1}});
  other->defaults().set("a", {std::string("x")});
  EXPECT_EQ(desk.machine->defaults().object("a"), PropertyValue{std::string("x")});
  desk.machine->defaults().remove("a");
  EXPECT_EQ(other->defaults().object("a"), std::nullopt);
  EXPECT_EQ(desk.hardware->domains.open("com.quorrel.tallowin")->object("a"),
            PropertyValue{std::int64_t{2}});
}

TEST(DeskMachine, HasNoDomainOfAnEarlierApplicationThatWasNeverUsed) {
  TestDesk desk("{}");
  EXPECT_EQ(desk.hardware->domains.open("com.quorrel.tallowin"), nullptr);
  EXPECT_EQ(desk.hardware->domains.open("org.example.other"), nullptr);
}

TEST(DeskMachine, EndsWhileAQueueStillUsesItsBus) {
  TestDesk desk(R"({"displays": [{"identifier": 3}]})");
  int readings = 0;
  {
    const auto machine = desk.makeMachine();
    const auto queue = machine->runtime().makeSerialQueue("test", QueueQuality::userInitiated);
    queue->async([&readings, machine = machine.get()] {
      machine->runtime().sleep(std::chrono::milliseconds(40));
      readings += machine->displays().screens().size() == 1 ? 1 : 0;
    });
    machine->runtime().sleep(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(readings, 1);
}

}  // namespace
}  // namespace brivane
