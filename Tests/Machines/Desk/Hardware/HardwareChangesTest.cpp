// What happens to a desk without any program's doing, and how programs come to know of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto changingDesk = R"({"displays": [
  {"identifier": 1, "builtIn": true},
  {"identifier": 2, "serial": 5, "firmware": {"level": 30, "revertsAfterWake": true}},
  {"identifier": 3, "headroom": 2}]})";
const std::array<std::uint8_t, 6> setForty = {0x84, 0x03, 0x10, 0x00, 0x28, 0xD1};

class HardwareChangesTest : public testing::Test {
 protected:
  HardwareChangesTest() {
    auto& notifications = desk.machine->notifications();
    observations = {
        notifications.observeScreenParameters([this] { heard.emplace_back("screens"); }),
        notifications.observeDidWake([this] { heard.emplace_back("wake"); }),
        notifications.observeScreensDidWake([this] { heard.emplace_back("screens wake"); })};
  }

  std::vector<DisplayID> online() { return *desk.machine->displays().onlineDisplayList(100); }

  /// How many panels and AV proxies the registry has.
  std::pair<int, int> registered() {
    std::pair<int, int> counts;
    const auto walk = desk.machine->ioRegistry().allServices();
    while (const auto entry = walk->next()) {
      if (entry->name() == "panel") ++counts.first;
      if (entry->className() == "DCPAVServiceProxy") ++counts.second;
    }
    return counts;
  }

  std::int32_t set(DisplayID display) {
    return desk.hardware->monitors.writeI2C(display, 0x37, 0x51, setForty, desk.time().now());
  }

  bool dim(DisplayID display) {
    const std::array<float, 2> dark = {0, 0.5F};
    return desk.machine->gammaTables().writeTable(display, dark, dark, dark) == 0;
  }

  float peak(DisplayID display) { return desk.hardware->gamma.table(display)->front().back(); }

  /// What was announced since the last time.
  std::vector<std::string> news() {
    desk.time().settle();
    return std::exchange(heard, {});
  }

  TestDesk desk{changingDesk};
  DeskHardware& hardware = *desk.hardware;
  std::vector<std::string> heard;
  std::vector<Observation> observations;
};

TEST_F(HardwareChangesTest, AnUnpluggedDisplayIsGoneEverywhere) {
  ASSERT_TRUE(dim(2));
  ASSERT_TRUE(hardware.changes.unplug(2));
  EXPECT_THAT(online(), ElementsAre(1, 3));
  EXPECT_EQ(desk.machine->displays().onlineDisplayCount(), 2u);
  EXPECT_THAT(desk.machine->displays().screens(), SizeIs(2));
  EXPECT_EQ(desk.machine->displays().panelIdentity(2).serial, 0u);
  EXPECT_EQ(registered(), std::pair(2, 2));
  EXPECT_NE(set(2), 0);
  EXPECT_EQ(desk.machine->gammaTables().capacity(2), 0u);
  EXPECT_FALSE(dim(2));
  EXPECT_FALSE(hardware.gamma.table(2).has_value());
  EXPECT_THAT(news(), ElementsAre("screens"));
}

TEST_F(HardwareChangesTest, AReplugedMonitorIsInItsOldPlaceWithItsLevelAndTheCalibratedTable) {
  ASSERT_EQ(set(2), 0);
  ASSERT_TRUE(dim(2));
  hardware.changes.unplug(2);
  ASSERT_TRUE(hardware.changes.plug(2));
  EXPECT_THAT(online(), ElementsAre(1, 2, 3));
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 40);
  EXPECT_EQ(peak(2), 1);
  EXPECT_THAT(news(), ElementsAre("screens", "screens"));
}

TEST_F(HardwareChangesTest, WhatIsNotPluggedInCannotChange) {
  EXPECT_FALSE(hardware.changes.unplug(7));
  EXPECT_FALSE(hardware.changes.plug(7));
  EXPECT_FALSE(hardware.changes.plug(2)) << "it is there";
  EXPECT_FALSE(hardware.changes.setFrame(7, {}));
  EXPECT_FALSE(hardware.changes.setHeadroom(7, 2));
  EXPECT_FALSE(hardware.changes.setScreenPresence(7, ScreenPresence::none));
  EXPECT_FALSE(hardware.changes.swapPorts(2, 7));
  EXPECT_FALSE(hardware.gamma.refuse(7, 1));
  EXPECT_THAT(news(), IsEmpty());
}

TEST_F(HardwareChangesTest, FrameHeadroomAndNumberOfAScreenChangeAndAreAnnounced) {
  hardware.changes.setFrame(3, {10, 20, 800, 600});
  hardware.changes.setHeadroom(3, 1);
  hardware.changes.setScreenPresence(3, ScreenPresence::unnumbered);
  const auto screen = desk.machine->displays().screens().at(2);
  EXPECT_EQ(screen.frame, (Rect{10, 20, 800, 600}));
  EXPECT_EQ(screen.potentialHeadroom, 1);
  EXPECT_EQ(screen.number, std::nullopt);
  EXPECT_THAT(news(), ElementsAre("screens", "screens", "screens"));
}

TEST_F(HardwareChangesTest, SwappedPortsShowInTheRegistry) {
  const auto controllerOf = [&](std::uint32_t model) {
    const auto walk = desk.machine->ioRegistry().allServices();
    while (const auto entry = walk->next()) {
      const auto attributes = entry->property("DisplayAttributes");
      if (!attributes) continue;
      const auto& product = attributes->dictionary()->at("ProductAttributes");
      if (product.dictionary()->at("ProductID").asInteger() == model) {
        return *entry->parent()->parent()->name();
      }
    }
    return std::string();
  };
  ASSERT_EQ(controllerOf(2), "dispext0");
  ASSERT_TRUE(hardware.changes.swapPorts(2, 3));
  EXPECT_EQ(controllerOf(2), "dispext1");
  EXPECT_EQ(controllerOf(3), "dispext0");
  EXPECT_THAT(news(), ElementsAre("screens"));
}

TEST_F(HardwareChangesTest, AnAnnouncementMayComeAlthoughNothingChanged) {
  hardware.events.announce(HardwareNotice::screenParameters);
  EXPECT_THAT(heard, IsEmpty()) << "it is a task of the main queue";
  EXPECT_THAT(news(), ElementsAre("screens"));
}

TEST_F(HardwareChangesTest, ARemovedObserverIsNotCalledEvenForEarlierAnnouncements) {
  hardware.events.announce(HardwareNotice::screenParameters);
  observations.clear();
  EXPECT_THAT(news(), IsEmpty());
}

TEST_F(HardwareChangesTest, AHandlerMayDropItsOwnObservation) {
  Observation own;
  int calls = 0;
  own = desk.machine->notifications().observeScreenParameters([&] {
    ++calls;
    own.reset();
  });
  hardware.events.announce(HardwareNotice::screenParameters);
  hardware.events.announce(HardwareNotice::screenParameters);
  desk.time().settle();
  EXPECT_EQ(calls, 1);
}

TEST_F(HardwareChangesTest, ASleepingMachinesBusAnswersNothingAndItsMonitorsSleep) {
  ASSERT_EQ(set(2), 0);
  hardware.changes.sleepSystem();
  EXPECT_NE(set(2), 0);
  EXPECT_TRUE(hardware.monitors.state(3)->isAsleep);
  EXPECT_THAT(news(), IsEmpty());
  hardware.changes.wakeSystem(desk.time().now());
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 30) << "this one forgets";
  EXPECT_EQ(set(2), 0);
  EXPECT_THAT(news(), ElementsAre("wake", "screens wake"));
}

TEST_F(HardwareChangesTest, ScreensSleepAndWakeByThemselves) {
  hardware.changes.sleepScreens();
  EXPECT_NE(set(3), 0);
  hardware.changes.wakeScreens(desk.time().now());
  EXPECT_EQ(set(3), 0);
  EXPECT_THAT(news(), ElementsAre("screens wake"));
}

TEST_F(HardwareChangesTest, RefusedGammaTablesChangeNothingAndAreCountedPerDisplay) {
  ASSERT_TRUE(hardware.gamma.refuse(2, 2));
  EXPECT_TRUE(dim(3));
  EXPECT_FALSE(dim(2));
  EXPECT_FALSE(dim(2));
  EXPECT_EQ(peak(2), 1);
  EXPECT_TRUE(dim(2));
  EXPECT_EQ(peak(2), 0.5F);
}

TEST_F(HardwareChangesTest, TheGrantIsGivenAndTakenWhileAProgramRuns) {
  AccessibilityAccess& access = desk.machine->accessibility();
  hardware.system.setAccessibilityGranted(false);
  EXPECT_FALSE(access.isTrusted());
  EXPECT_FALSE(access.requestTrust());
  EXPECT_EQ(desk.machine->accessibility().promptCount(), 1);
  hardware.system.setAccessibilityGranted(true);
  EXPECT_TRUE(access.requestTrust());
  EXPECT_EQ(desk.machine->accessibility().promptCount(), 1) << "who has it is not asked";
}

TEST_F(HardwareChangesTest, AChangeOfAppearanceIsAnnounced) {
  std::vector<HardwareNotice> notices;
  const auto observation = hardware.events.observe<HardwareNotice>(
      [&](HardwareNotice notice) { notices.push_back(notice); });
  EXPECT_EQ(hardware.system.appearance(), DeskAppearance::light);
  hardware.system.setAppearance(DeskAppearance::dark);
  EXPECT_EQ(hardware.system.appearance(), DeskAppearance::dark);
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::appearance));
  EXPECT_THAT(news(), IsEmpty());
}

TEST_F(HardwareChangesTest, DisplaysComeAndGoWhileAnotherThreadWalksThem) {
  std::atomic<bool> isDone = false;
  std::thread other([&] {
    while (!isDone) {
      const auto list = *desk.machine->displays().onlineDisplayList(100);
      EXPECT_THAT(list, SizeIs(testing::AnyOf(2, 3)));
      EXPECT_GE(registered().first, 2);
      set(2);
    }
  });
  for (int i = 0; i < 200; ++i) {
    hardware.changes.unplug(2);
    hardware.changes.setFrame(3, {1.0 * i, 0, 100, 100});
    hardware.changes.plug(2);
  }
  isDone = true;
  other.join();
  EXPECT_THAT(online(), ElementsAre(1, 2, 3));
}

TEST_F(HardwareChangesTest, AKilledProgramChangesNothingAndGetsNoEvents) {
  DeskMachine& machine = *desk.machine;
  ASSERT_TRUE(dim(2));
  machine.defaults().set("key", {true});
  machine.applications().announce();
  const auto tap =
      machine.eventTaps().createTap([](const TapEvent&) { return TapVerdict::swallow; });
  tap->setEnabled(true);
  machine.hotkeys().registerHotkey(80, 0, {});
  const auto traced = desk.trace();

  machine.kill();
  machine.gammaTables().restoreCalibratedTables();
  machine.defaults().remove("key");
  machine.log().write("Brivane: still here");
  hardware.events.announce(HardwareNotice::screenParameters);

  EXPECT_EQ(peak(2), 0.5F);
  EXPECT_EQ(hardware.domains.open("com.quorrel.brivane")->object("key"), PropertyValue{true});
  EXPECT_THAT(*desk.lines, IsEmpty());
  EXPECT_THAT(news(), IsEmpty());
  EXPECT_THAT(*traced, ElementsAre("program killed", "notice screen-parameters"));
  const auto next = desk.makeMachine();
  EXPECT_THAT(next->applications().runningApplications("com.quorrel.brivane"), IsEmpty());
  EXPECT_TRUE(std::holds_alternative<HotkeyReference>(next->hotkeys().registerHotkey(80, 0, {})));
  next->keyboard().pressBrightness(BrightnessKey::up);
  EXPECT_FLOAT_EQ(*hardware.panels.level(1), 0.5625F);
}

TEST_F(HardwareChangesTest, AnExceptionFromAnObserverDoesNotBlockTheNextEvent) {
  auto leaving = desk.hardware->events.observe<HardwareNotice>(
      [](HardwareNotice) { throw std::runtime_error("it ends here"); });
  EXPECT_THROW(desk.hardware->events.announce(HardwareNotice::screenParameters),
               std::runtime_error);
  leaving.reset();
  int notices = 0;
  const auto staying =
      desk.hardware->events.observe<HardwareNotice>([&](HardwareNotice) { ++notices; });
  desk.hardware->events.announce(HardwareNotice::screenParameters);
  EXPECT_EQ(notices, 1);
}

}  // namespace
}  // namespace brivane
