#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

struct DisplayRegistryTest : testing::Test {
  FakeMachine machine;
  DisplayRegistry registry{machine.displaySystem, machine.registry, machine.loader, machine.time};
};

TEST_F(DisplayRegistryTest, ListsOnlineDisplaysInTheWindowSystemsOrder) {
  machine.displaySystem.add({9, 0, 0, 0, false}, "A");
  machine.displaySystem.add({2, 0, 0, 0, true}, "B");
  machine.displaySystem.add({5, 0, 0, 0, false}, "C");
  EXPECT_THAT(registry.onlineDisplayIDs(), ElementsAre(9, 2, 5));
  EXPECT_THAT(registry.onlineExternalDisplayIDs(), ElementsAre(9, 5));
  EXPECT_TRUE(registry.isOnline(2));
  EXPECT_FALSE(registry.isOnline(3));
}

TEST_F(DisplayRegistryTest, ListsNothingOnAnyError) {
  machine.displaySystem.add({9, 0, 0, 0, false}, "A");
  machine.displaySystem.refusesList = true;
  EXPECT_THAT(registry.onlineDisplayIDs(), IsEmpty());
  machine.displaySystem.refusesList = false;
  machine.displaySystem.refusesCount = true;
  EXPECT_THAT(registry.onlineDisplayIDs(), IsEmpty());
  EXPECT_FALSE(registry.isOnline(9));
}

TEST_F(DisplayRegistryTest, NamesADisplayAfterItsScreen) {
  machine.displaySystem.add({9, 0, 0, 0, false}, "Studio");
  machine.displaySystem.add({5, 0, 0, 0, true}, "Inside");
  EXPECT_EQ(registry.localizedName(9), "Studio");
  EXPECT_EQ(registry.localizedName(5), "Inside");
}

TEST_F(DisplayRegistryTest, NamesSeveralDisplaysInTheOrderAskedForByTheFirstScreenOfEach) {
  machine.displaySystem.add({9, 0, 0, 0, false}, "Studio");
  machine.displaySystem.add({5, 0, 0, 0, true}, "Inside");
  machine.displaySystem.allScreens.push_back({9, {}, "Mirror", 1.0});
  EXPECT_THAT(registry.localizedNames({5, 7, 9}), ElementsAre("Inside", "Display 7", "Studio"));
  EXPECT_THAT(registry.localizedNames({}), IsEmpty());
}

TEST_F(DisplayRegistryTest, NamesADisplayWithoutAScreenByWhatItIs) {
  machine.displaySystem.online = {{9, 0, 0, 0, false}, {5, 0, 0, 0, true}};
  machine.displaySystem.allScreens = {{std::nullopt, {}, "Nameless", 1.0}};
  EXPECT_EQ(registry.localizedName(9), "Display 9");
  EXPECT_EQ(registry.localizedName(5), "Built-in Display");
  EXPECT_EQ(registry.localizedName(4294967295), "Display 4294967295");
}

TEST_F(DisplayRegistryTest, AScanFindsPanelsAndChannelsByPort) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.addMonitor(5, "B", "dispext1", 4, 5, 6);
  registry.scan();
  EXPECT_EQ(registry.panels,
            (std::map<std::string, PanelIdentity>{{"disp0", {1, 2, 3}}, {"dispext1", {4, 5, 6}}}));
  EXPECT_THAT(registry.handlesByPort, ElementsAre(Key("disp0"), Key("dispext1")));
  EXPECT_EQ(registry.handlesByPort.at("dispext1")->location, "dispext1");
}

TEST_F(DisplayRegistryTest, AWalkThatAChangeOfTheRegistryCutShortIsBegunAgainOnce) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.addMonitor(5, "B", "dispext1", 4, 5, 6);
  machine.registry.walksToCutShort = 1;
  registry.scan();
  EXPECT_EQ(machine.registry.walks, 2);
  EXPECT_THAT(registry.panels, ElementsAre(Key("disp0"), Key("dispext1")));
  EXPECT_THAT(registry.handlesByPort, ElementsAre(Key("disp0"), Key("dispext1")));
  machine.registry.walksToCutShort = 2;
  registry.scan();
  EXPECT_EQ(machine.registry.walks, 4) << "the second is the last";
  EXPECT_THAT(registry.panels, ElementsAre(Key("disp0"))) << "what there is is kept";
}

TEST_F(DisplayRegistryTest, AMonitorThatIsUnpluggedDuringAWalkIsForgotten) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.addMonitor(5, "B", "dispext1", 4, 5, 6);
  machine.registry.walksToCutShort = 1;
  machine.loader.libraries[ioKit]["IOAVServiceCreateWithService"] =
      CreateAVServiceFunction([this](const RegistryEntry&) {
        machine.registry.entries.clear();
        return std::shared_ptr<AVService>();
      });
  registry.scan();
  EXPECT_THAT(registry.panels, IsEmpty());
}

TEST_F(DisplayRegistryTest, AScanForgetsTheOneBefore) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  registry.scan();
  machine.registry.entries.clear();
  registry.scan();
  EXPECT_THAT(registry.panels, IsEmpty());
  EXPECT_THAT(registry.handlesByPort, IsEmpty());
}

TEST_F(DisplayRegistryTest, AScanOnAMachineWithoutDDCFindsNothingAndStillCounts) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.loader.libraries[ioKit].erase("IOAVServiceReadI2C");
  EXPECT_FALSE(registry.ddcAvailable());
  registry.scan();
  EXPECT_THAT(registry.panels, IsEmpty());
  EXPECT_EQ(machine.registry.walks, 0);
  EXPECT_EQ(registry.lastScan, machine.time.now());
}

TEST_F(DisplayRegistryTest, AScanThatTheRegistryRefusesFindsNothingAndStillCounts) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  EXPECT_TRUE(registry.ddcAvailable());
  registry.scan();
  machine.registry.refuses = true;
  machine.time.runFor(fromSeconds(2));
  registry.scan();
  EXPECT_THAT(registry.panels, IsEmpty());
  EXPECT_THAT(registry.handlesByPort, IsEmpty());
  EXPECT_EQ(registry.lastScan, Instant(fromSeconds(2)));
}

TEST_F(DisplayRegistryTest, ALaterPanelOrChannelAtAPortReplacesAnEarlierOne) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  registry.scan();
  const auto first = registry.handlesByPort.at("disp0")->service;
  machine.registry.addPanel("disp0", 4, 5, 6);
  machine.registry.addProxy("disp0:again");
  registry.scan();
  EXPECT_EQ(registry.panels.at("disp0"), (PanelIdentity{4, 5, 6}));
  EXPECT_EQ(registry.handlesByPort.size(), 1U);
  EXPECT_NE(registry.handlesByPort.at("disp0")->service, first);
}

TEST_F(DisplayRegistryTest, AProxyWithoutAServiceLeavesNoChannel) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.bus.channels.erase("disp0");
  registry.scan();
  EXPECT_THAT(registry.handlesByPort, IsEmpty());
  EXPECT_EQ(registry.panels.size(), 1U);
}

TEST_F(DisplayRegistryTest, AnEntryThatIsAPanelIsNoProxyAsWell) {
  machine.bus.install(machine.loader);
  machine.bus.channels["disp0"];
  const auto panel = machine.registry.addPanel("disp0", 1, 2, 3);
  panel->ownClass = "DCPAVServiceProxy";
  panel->properties["Location"] = {std::string("External")};
  registry.scan();
  EXPECT_EQ(registry.panels.size(), 1U);
  EXPECT_THAT(registry.handlesByPort, IsEmpty());
}

TEST_F(DisplayRegistryTest, InternalAndStrayProxiesAreIgnored) {
  machine.bus.install(machine.loader);
  machine.bus.channels["disp0"];
  machine.bus.channels["dcp"];
  machine.registry.addProxy("disp0:inside")->properties["Location"] = {std::string("Embedded")};
  machine.registry.addProxy("dcp:disp0");
  registry.scan();
  EXPECT_THAT(registry.handlesByPort, IsEmpty());
}

TEST_F(DisplayRegistryTest, AProxyIsPutAtThePartOfItsParentsNameBeforeTheColon) {
  machine.bus.install(machine.loader);
  machine.bus.channels["dispext2"];
  machine.registry.addProxy("dispext2:dcpav-service-epic:0");
  registry.scan();
  EXPECT_EQ(registry.handlesByPort.at("dispext2")->location, "dispext2");
}

TEST_F(DisplayRegistryTest, RescansWhenForcedAtFirstAndAfterFiveSeconds) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  registry.rescanIfNeeded(false);
  EXPECT_EQ(machine.registry.walks, 1);
  machine.time.runFor(Microseconds(4'999'999));
  registry.rescanIfNeeded(false);
  EXPECT_EQ(machine.registry.walks, 1);
  machine.time.runFor(Microseconds(1));
  registry.rescanIfNeeded(false);
  EXPECT_EQ(machine.registry.walks, 2);
  registry.rescanIfNeeded(true);
  EXPECT_EQ(machine.registry.walks, 3);
}

TEST_F(DisplayRegistryTest, AHandleIsLookedUpInTheLastScanForFiveSeconds) {
  machine.bus.install(machine.loader);
  EXPECT_EQ(registry.handle(9), nullptr);
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.time.runFor(fromSeconds(4.9));
  EXPECT_EQ(registry.handle(9), nullptr);
  machine.time.runFor(fromSeconds(0.1));
  EXPECT_NE(registry.handle(9), nullptr);
  EXPECT_EQ(registry.handle(9), registry.handlesByPort.at("disp0"));
}

TEST_F(DisplayRegistryTest, TheBuiltInPanelHasNoHandleAndCausesNoScan) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.displaySystem.online.front().isBuiltIn = true;
  EXPECT_EQ(registry.handle(9), nullptr);
  EXPECT_EQ(registry.lastScan, std::nullopt);
}

TEST_F(DisplayRegistryTest, APortWithoutAChannelGivesNoHandle) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.registry.entries.back()->properties.clear();
  EXPECT_EQ(registry.handle(9), nullptr);
  EXPECT_EQ(registry.resolvePort(9), "disp0");
}

TEST_F(DisplayRegistryTest, AMonitorWithoutASerialNumberInTheRegistryIsStillFound) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 77);
  machine.addMonitor(5, "B", "disp1", 4, 5, 6);
  machine.registry.entries.clear();
  machine.registry.addPanel("disp0", 1, 2, std::nullopt);
  machine.registry.addPanel("disp1", 4, 5, 6);
  registry.scan();
  EXPECT_EQ(registry.resolvePort(9), "disp0");
  EXPECT_EQ(registry.resolvePort(5), "disp1");
}

TEST_F(DisplayRegistryTest, IdenticalMonitorsArePairedByNumberAndPortName) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.addMonitor(5, "B", "disp1", 1, 2, 3);
  machine.addMonitor(3, "Another model", "disp2", 1, 7, 3);
  machine.addMonitor(4, "Another make", "disp3", 7, 2, 3);
  registry.scan();
  EXPECT_EQ(registry.resolvePort(5), "disp0");
  EXPECT_EQ(registry.resolvePort(9), "disp1");
}

TEST_F(DisplayRegistryTest, TheOnlyMonitorGetsTheOnlyPortEvenWithoutItsPanel) {
  machine.displaySystem.add({1, 7, 7, 7, true}, "Inside");
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  for (const auto& entry : machine.registry.entries) entry->properties.erase("DisplayAttributes");
  registry.scan();
  EXPECT_EQ(registry.resolvePort(9), "disp0") << "the built-in panel does not count";
}

TEST_F(DisplayRegistryTest, TwoMonitorsWithoutPanelsGetNoPort) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  machine.addMonitor(5, "B", "disp1", 4, 5, 6);
  for (const auto& entry : machine.registry.entries) entry->properties.erase("DisplayAttributes");
  registry.scan();
  EXPECT_EQ(registry.resolvePort(9), std::nullopt);
  EXPECT_EQ(registry.resolvePort(5), std::nullopt);
}

TEST_F(DisplayRegistryTest, TheAgeOfAScanCountsFromItsStart) {
  machine.addMonitor(9, "A", "disp0", 1, 2, 3);
  auto& symbol = machine.loader.libraries[ioKit]["IOAVServiceCreateWithService"];
  symbol = CreateAVServiceFunction(
      [this, create = std::get<CreateAVServiceFunction>(symbol)](const RegistryEntry& proxy) {
        machine.time.sleep(fromSeconds(2));
        return create(proxy);
      });
  registry.scan();
  EXPECT_EQ(registry.lastScan, Instant());
}

}  // namespace
}  // namespace brivane
