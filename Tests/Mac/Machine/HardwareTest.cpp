// Displays, gamma tables, the I/O registry and the private entry points behind it.
#include <gmock/gmock.h>

#include <array>

#include "Machines/Mac/Displays.h"
#include "Machines/Mac/Gamma.h"
#include "Machines/Mac/Registry.h"
#include "Machines/Mac/Symbols.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"
#include "Tests/Mac/Machine/MacBench.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {
namespace {

using testing::ElementsAre;

// Displays

class MacDisplaysTest : public MacTest {
 protected:
  FakeAppKitServices appKit;
  MacDisplays displays{appKit};
};

TEST_F(MacDisplaysTest, AWindowServerThatRefusesGivesNeitherACountNorAList) {
  fake::mac().displays = {{.id = 1}};
  fake::mac().failures["CGGetOnlineDisplayList"] = 1000;
  EXPECT_EQ(displays.onlineDisplayCount(), std::nullopt);
  EXPECT_EQ(displays.onlineDisplayList(5), std::nullopt);
}

TEST_F(MacDisplaysTest, NumbersAreThePanelsOwnInTheirOrder) {
  fake::mac().displays = {{.id = 7, .panel = {0x610, 22, 0xFFFFFFFF}}};
  EXPECT_EQ(displays.panelIdentity(7), (PanelIdentity{0x610, 22, 0xFFFFFFFF}));
}

TEST_F(MacDisplaysTest, ADisplayWithoutAMonitorHasTheNumbersThatTheSystemGives) {
  constexpr std::uint32_t none = 0xFFFFFFFF;
  EXPECT_EQ(displays.panelIdentity(8), (PanelIdentity{none, none, none}));
}

TEST_F(MacDisplaysTest, ScreensAndPointerAreAskedOfAppKit) {
  appKit.screenList = {{.number = 7, .frame = {0, 0, 10, 20}, .localizedName = "A"}};
  appKit.pointer = {3, 4};
  EXPECT_EQ(displays.screens().front().localizedName, "A");
  EXPECT_EQ(displays.mainScreen()->number, 7u);
  EXPECT_EQ(displays.pointerPosition(), (Point{3, 4}));
}

// Gamma

TEST_F(MacTest, AGammaStatusIsTheWindowServersOwn) {
  fake::mac().displays = {{.id = 7}};
  fake::mac().failures["CGGetDisplayTransferByTable"] = 1002;
  fake::mac().failures["CGSetDisplayTransferByTable"] = 1003;
  MacGammaTables gamma;
  std::array<float, 2> samples{};
  std::uint32_t returned = 0;
  EXPECT_EQ(gamma.readTable(7, samples, samples, samples, returned), 1002);
  EXPECT_EQ(gamma.writeTable(7, samples, samples, samples), 1003);
}

TEST_F(MacTest, SamplesReachTheWindowServerAsTheyAreEachChannelInItsPlace) {
  fake::mac().displays = {{.id = 7, .gammaCapacity = 3}};
  MacGammaTables gamma;
  const std::array<float, 3> red = {0, 0.5F, 1};
  const std::array<float, 3> green = {0.25F, 0.75F, 1.8F};
  const std::array<float, 3> blue = {0.125F, 0, 0.5F};
  EXPECT_EQ(gamma.writeTable(7, red, green, blue), 0);
  EXPECT_THAT(fake::mac().calls, ElementsAre("CGSetDisplayTransferByTable 7 3"));
  const fake::Table& table = fake::mac().displays.front().table;
  EXPECT_THAT(table.red, testing::ElementsAreArray(red));
  EXPECT_THAT(table.green, testing::ElementsAreArray(green));
  EXPECT_THAT(table.blue, testing::ElementsAreArray(blue));
  std::array<std::array<float, 3>, 3> read{};
  std::uint32_t returned = 0;
  EXPECT_EQ(gamma.readTable(7, read[0], read[1], read[2], returned), 0);
  EXPECT_EQ(returned, 3u);
  EXPECT_THAT(read, ElementsAre(red, green, blue));
}

TEST_F(MacTest, AllCalibratedTablesComeBackWithOneCall) {
  MacGammaTables().restoreCalibratedTables();
  EXPECT_THAT(fake::mac().calls, ElementsAre("CGDisplayRestoreColorSyncSettings"));
}

// The registry

class MacRegistryTest : public MacTest {
 protected:
  MacRegistryTest() {
    fake::mac().registry.children = {{"AppleARMIODevice",
                                      "disp0",
                                      {{"key", {std::string("value")}}},
                                      {{"DCPAVServiceProxy", "proxy", {}, {}, nullptr}},
                                      nullptr}};
  }

  std::shared_ptr<const RegistryEntry> entry(int position) {
    const auto walk = registry.allServices();
    auto found = walk->next();
    while (position-- > 0) found = walk->next();
    return found;
  }

  MacIORegistry registry;
};

TEST_F(MacRegistryTest, AWalkThatIsGivenUpHalfwayGivesEverythingBack) {
  const auto walk = registry.allServices();
  EXPECT_EQ(walk->next()->name(), "Root");
  EXPECT_EQ(walk->next()->className(), "AppleARMIODevice");
}

TEST_F(MacRegistryTest, AnEntrysParentIsItsOwnReference) {
  std::shared_ptr<const RegistryEntry> above;
  {
    const auto proxy = entry(2);
    EXPECT_EQ(proxy->className(), "DCPAVServiceProxy");
    above = proxy->parent();
  }
  EXPECT_EQ(above->name(), "disp0");
  EXPECT_EQ(above->property("key"), (PropertyValue{std::string("value")}));
  EXPECT_EQ(above->parent()->parent(), nullptr);
}

TEST_F(MacRegistryTest, WhatTheRegistryRefusesIsNothing) {
  fake::mac().failures = {
      {"IOObjectGetClass", 5}, {"IORegistryEntryGetName", 5}, {"IORegistryEntryGetParentEntry", 5}};
  const auto proxy = entry(2);
  EXPECT_EQ(proxy->className(), std::nullopt);
  EXPECT_EQ(proxy->name(), std::nullopt);
  EXPECT_EQ(proxy->parent(), nullptr);
  EXPECT_EQ(proxy->property("\xFF"), std::nullopt);
}

TEST_F(MacRegistryTest, AWalkThatAChangeCutShortIsToldFromOneThatIsComplete) {
  fake::mac().entriesBeforeChange = 1;
  const auto first = registry.allServices();
  first->next();
  EXPECT_NE(first->next(), nullptr);
  EXPECT_EQ(first->next(), nullptr);
  EXPECT_TRUE(first->wasCutShort());
  const auto second = registry.allServices();
  int entries = 0;
  while (second->next() != nullptr) ++entries;
  EXPECT_EQ(entries, 3);
  EXPECT_FALSE(second->wasCutShort());
}

TEST_F(MacRegistryTest, WithoutARootOrAnIteratorThereIsNoWalk) {
  fake::mac().failures = {{"IORegistryGetRootEntry", 5}};
  EXPECT_EQ(registry.allServices(), nullptr);
  fake::mac().failures = {{"IORegistryEntryCreateIterator", 5}};
  EXPECT_EQ(registry.allServices(), nullptr);
}

// Entry points

class MacSymbolsTest : public MacTest {
 protected:
  template <typename Function>
  Function find(const char* library, const char* name) {
    return std::get<Function>(symbols.find(symbols.open(library, lazyBinding), name));
  }

  MacSymbolLoader symbols;
};

TEST_F(MacSymbolsTest, LibrariesAreOpenedByTheirFullPathsInTheModeThatIsAskedFor) {
  EXPECT_NE(symbols.open(ioKit, lazyBinding), 0);
  EXPECT_THAT(fake::mac().calls, ElementsAre("dlopen " + std::string(ioKit) + " 1"));
}

TEST_F(MacSymbolsTest, ALibraryThatIsNotThereHasNoHandle) {
  fake::mac().hasIOKitLibrary = false;
  fake::mac().hasDisplayServices = false;
  EXPECT_EQ(symbols.open(ioKit, lazyBinding), 0);
  EXPECT_EQ(symbols.open(displayServices, lazyBinding), 0);
}

TEST_F(MacSymbolsTest, ANameMayBeFoundInEverythingThatIsLoadedAlone) {
  const std::string name = "IOAVServiceWriteI2C";
  fake::mac().globalOnly = {name};
  const auto inLibrary = symbols.find(symbols.open(ioKit, lazyBinding), name);
  EXPECT_TRUE(std::holds_alternative<std::monostate>(inLibrary));
  EXPECT_TRUE(std::holds_alternative<WriteI2CFunction>(symbols.find(globalNamespace, name)));
}

TEST_F(MacSymbolsTest, AnAddressOfAnUnknownShapeIsNoFunction) {
  const auto found = symbols.find(symbols.open(ioKit, lazyBinding), "SomethingElse");
  EXPECT_TRUE(std::holds_alternative<std::monostate>(found));
}

TEST_F(MacSymbolsTest, AServiceIsHeldAsLongAsItsPointerAndNoLonger) {
  const auto create = find<CreateAVServiceFunction>(ioKit, "IOAVServiceCreateWithService");
  fake::mac().registry.monitor = std::make_shared<fake::Monitor>(FirmwareDescription{});
  MacIORegistry registry;
  auto service = create(*registry.allServices()->next());
  ASSERT_NE(service, nullptr);
  const auto held = fake::liveObjects();
  service.reset();
  EXPECT_EQ(fake::liveObjects(), held - 1);
}

TEST_F(MacSymbolsTest, AnEntryWithoutAServiceGivesNone) {
  const auto create = find<CreateAVServiceFunction>(ioKit, "IOAVServiceCreateWithService");
  MacIORegistry registry;
  EXPECT_EQ(create(*registry.allServices()->next()), nullptr);
}

TEST_F(MacSymbolsTest, DisplayServicesTakeAndGiveLevelsAsTheyAre) {
  fake::mac().displays = {{.id = 1, .level = 0.5F}, {.id = 2}};
  const auto get = find<GetBrightnessFunction>(displayServices, "DisplayServicesGetBrightness");
  const auto set = find<SetBrightnessFunction>(displayServices, "DisplayServicesSetBrightness");
  const auto can =
      find<CanChangeBrightnessFunction>(displayServices, "DisplayServicesCanChangeBrightness");
  float level = -1;
  EXPECT_EQ(get(1, level), 0);
  EXPECT_EQ(level, 0.5F);
  EXPECT_EQ(set(1, 0.75F), 0);
  EXPECT_EQ(fake::mac().displays.front().level, 0.75F);
  EXPECT_TRUE(can(1)) << "any answer but 0 is yes";
  EXPECT_NE(get(2, level), 0);
  EXPECT_NE(set(2, 1), 0);
  EXPECT_FALSE(can(2));
}

}  // namespace
}  // namespace brivane
