// What one process does to a desk's hardware, and another one meets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <utility>

#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto deskText = R"({"displays": [
  {"identifier": 1, "builtIn": true},
  {"identifier": 2, "firmware": {"level": 30}},
  {"identifier": 3, "headroom": 2}]})";
const std::array<std::uint8_t, 6> forty = {0x84, 0x03, 0x10, 0x00, 0x28, 0xD1};

class SharedHardwareTest : public testing::Test {
 protected:
  static std::vector<DisplayID> attached(const DeskHardware& hardware) {
    std::vector<DisplayID> identifiers;
    for (const auto& display : hardware.displays.all()) identifiers.push_back(display.identifier);
    return identifiers;
  }

  std::string stateOf(const std::string& name) const {
    return TemporaryFolder::read(state / (name + ".json"));
  }

  /// The notices that `hardware` delivers from now on.
  std::vector<HardwareNotice>& listen(DeskHardware& hardware) {
    observations.push_back(hardware.events.observe<HardwareNotice>(
        [this](HardwareNotice notice) { notices.push_back(notice); }));
    return notices;
  }

  TemporaryFolder folder;
  const std::filesystem::path state = folder / "state";
  std::vector<HardwareNotice> notices;
  std::vector<Observation> observations;
};

TEST_F(SharedHardwareTest, ADisplayUnpluggedWhileTheListIsWalkedIsStillInTheList) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  std::vector<std::string> names;
  for (const auto& display : one.hardware.displays.all()) {
    two.hardware.changes.unplug(3);
    EXPECT_LE(one.hardware.displays.all().size(), 2u);
    names.push_back(std::to_string(display.identifier));
  }
  EXPECT_THAT(names, ElementsAre("1", "2", "3"));
}

TEST_F(SharedHardwareTest, ADisplayUnpluggedByOneProcessIsGoneForAllAndCanBePluggedInByAny) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  ASSERT_THAT(attached(two.hardware), ElementsAre(1, 2, 3));
  ASSERT_TRUE(one.hardware.changes.unplug(2));
  EXPECT_THAT(attached(two.hardware), ElementsAre(1, 3));
  EXPECT_NE(two.hardware.monitors.writeI2C(2, 0x37, 0x51, forty, two.runtime.now()), 0);
  EXPECT_FALSE(two.hardware.changes.unplug(2));
  ASSERT_TRUE(two.hardware.changes.plug(2));
  EXPECT_THAT(attached(one.hardware), ElementsAre(1, 2, 3)) << "in its old place";
  EXPECT_EQ(one.hardware.monitors.writeI2C(2, 0x37, 0x51, forty, one.runtime.now()), 0);
  FolderDesk later(deskText, state);
  later.hardware.changes.unplug(1);
  EXPECT_THAT(attached(FolderDesk(deskText, state).hardware), ElementsAre(2, 3));
}

TEST_F(SharedHardwareTest, FramePortHeadroomAndNumberOfAScreenAreShared) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.changes.setFrame(2, {-1920, 0.5, 800, 600});
  one.hardware.changes.setHeadroom(2, 1.6);
  one.hardware.changes.setScreenPresence(2, ScreenPresence::unnumbered);
  one.hardware.changes.swapPorts(2, 3);
  const auto display = two.hardware.displays.find(2);
  ASSERT_NE(display, nullptr);
  EXPECT_EQ(display->frame, (Rect{-1920, 0.5, 800, 600}));
  EXPECT_EQ(display->headroom, 1.6);
  EXPECT_EQ(display->screen, ScreenPresence::unnumbered);
  EXPECT_EQ(display->port, "dispext1");
  EXPECT_EQ(two.hardware.displays.find(3)->port, "dispext0");
  EXPECT_EQ(two.hardware.displays.find(3)->headroom, 2) << "untouched";
}

TEST_F(SharedHardwareTest, SleepMoodGrantAppearancePointerAndRefusalsAreShared) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.monitors.setMood(2, MonitorMood::silent);
  one.hardware.system.setAccessibilityGranted(false);
  one.hardware.system.setAppearance(DeskAppearance::dark);
  one.hardware.system.movePointer({5, 6});
  one.hardware.gamma.refuse(2, 2);
  one.hardware.changes.sleepSystem();
  EXPECT_EQ(two.hardware.monitors.state(2)->mood, MonitorMood::silent);
  EXPECT_TRUE(two.hardware.monitors.state(3)->isAsleep);
  EXPECT_TRUE(two.hardware.system.isAsleep());
  EXPECT_NE(two.hardware.monitors.writeI2C(3, 0x37, 0x51, forty, two.runtime.now()), 0);
  EXPECT_FALSE(two.hardware.system.isAccessibilityGranted());
  EXPECT_EQ(two.hardware.system.appearance(), DeskAppearance::dark);
  EXPECT_EQ(two.hardware.system.pointer(), (Point{5, 6}));
  const GammaTable dark = {GammaCurve{0, 0.5F}, GammaCurve{0, 0.5F}, GammaCurve{0, 0.5F}};
  EXPECT_FALSE(two.hardware.gamma.setTable(2, dark));
  EXPECT_FALSE(one.hardware.gamma.setTable(2, dark)) << "the second of two";
  EXPECT_TRUE(two.hardware.gamma.setTable(2, dark));
  two.hardware.changes.wakeSystem(two.runtime.now());
  EXPECT_FALSE(one.hardware.system.isAsleep());
  EXPECT_EQ(one.hardware.monitors.writeI2C(3, 0x37, 0x51, forty, one.runtime.now()), 0);
}

TEST_F(SharedHardwareTest, AKeyThatOneProcessPressesIsDownForAll) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  EXPECT_TRUE(one.hardware.input.putKeyDown(0x70000006E, 0x70000006F));
  EXPECT_FALSE(two.hardware.input.putKeyDown(0x70000006E, 0x70000006E));
  EXPECT_THAT(two.hardware.input.keysDown().arrived,
              ElementsAre(std::pair(HIDUsage{0x70000006E}, HIDUsage{0x70000006F})));
  EXPECT_EQ(two.hardware.input.takeKeyUp(0x70000006E), 0x70000006F);
  EXPECT_EQ(one.hardware.input.takeKeyUp(0x70000006E), std::nullopt);
}

TEST_F(SharedHardwareTest, EditingAFrameInTheDeskFilePlugsEverythingInAsTheFileSays) {
  FolderDesk(deskText, state).hardware.changes.unplug(2);
  std::string edited = deskText;
  edited.replace(edited.find("\"headroom\": 2"), 13, "\"headroom\": 3");
  EXPECT_THAT(attached(FolderDesk(edited, state).hardware), ElementsAre(1, 2, 3));
}

TEST_F(SharedHardwareTest, EditingAFirmwareInTheDeskFilePlugsNothingIn) {
  FolderDesk(deskText, state).hardware.changes.unplug(2);
  std::string edited = deskText;
  edited.replace(edited.find("\"level\": 30"), 11, "\"level\": 31");
  FolderDesk desk(edited, state);
  EXPECT_THAT(attached(desk.hardware), ElementsAre(1, 3));
  ASSERT_TRUE(desk.hardware.changes.plug(2));
  EXPECT_EQ(desk.hardware.monitors.state(2)->shownLevel, 31);
}

TEST_F(SharedHardwareTest, GrantAndAppearanceStartAfreshWhenTheirOwnSectionsAreEdited) {
  const auto text = [](const char* grant, const char* appearance) {
    return std::string(R"({"grants": {"accessibility": )") + grant + R"(}, "appearance": ")" +
           appearance + "\"}";
  };
  {
    FolderDesk desk(text("true", "light"), state);
    desk.hardware.system.setAccessibilityGranted(false);
    desk.hardware.system.setAppearance(DeskAppearance::dark);
  }
  FolderDesk same(text("true", "light"), state);
  EXPECT_FALSE(same.hardware.system.isAccessibilityGranted());
  EXPECT_EQ(same.hardware.system.appearance(), DeskAppearance::dark);
  FolderDesk darkFile(text("true", "dark"), state);
  darkFile.hardware.system.setAppearance(DeskAppearance::light);
  FolderDesk edited(text("true", "light"), state);
  EXPECT_EQ(edited.hardware.system.appearance(), DeskAppearance::light);
  EXPECT_FALSE(edited.hardware.system.isAccessibilityGranted()) << "its section is the same";
}

TEST_F(SharedHardwareTest, AnArrangementThatMakesNoSenseIsSetAsideAndEverythingIsPluggedIn) {
  FolderDesk(deskText, state).hardware.changes.unplug(2);
  std::string text = stateOf("displays");
  const auto place = text.find("\"identifier\":3");
  ASSERT_NE(place, std::string::npos);
  text.replace(place, 14, "\"identifier\":1");
  std::ofstream(state / "displays.json") << text;
  FolderDesk desk(deskText, state);
  EXPECT_THAT(attached(desk.hardware), ElementsAre(1, 2, 3));
  ASSERT_THAT(*desk.lines, SizeIs(1));
  EXPECT_THAT(desk.lines->front(), HasSubstr("a display is listed twice"));
}

TEST_F(SharedHardwareTest, AProcessThatFollowsGetsAllLaterEventsInOrder) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.changes.unplug(2);
  two.hardware.events.follow();
  listen(two.hardware);
  two.hardware.events.deliver();
  EXPECT_THAT(notices, IsEmpty()) << "that was before";
  one.hardware.changes.sleepSystem();
  one.hardware.changes.wakeSystem(one.runtime.now());
  one.hardware.changes.plug(2);
  one.hardware.system.setAppearance(DeskAppearance::dark);
  EXPECT_THAT(notices, IsEmpty());
  two.hardware.events.deliver();
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::didWake, HardwareNotice::screensDidWake,
                                   HardwareNotice::screenParameters, HardwareNotice::appearance));
  two.hardware.events.deliver();
  EXPECT_THAT(notices, SizeIs(4)) << "once each";
}

TEST_F(SharedHardwareTest, ItsOwnEventsComeAtOnceAndAfterEarlierOnesOfOthers) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  two.hardware.events.follow();
  listen(two.hardware);
  one.hardware.events.announce(HardwareNotice::didWake);
  two.hardware.system.setAppearance(DeskAppearance::dark);
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::didWake, HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, AnEventThatAnObserverCausesIsDeliveredAfterwards) {
  FolderDesk desk(deskText, state);
  desk.hardware.events.follow();
  const auto waking = desk.hardware.events.observe<HardwareNotice>([&](HardwareNotice notice) {
    if (notice == HardwareNotice::didWake) desk.hardware.changes.unplug(3);
  });
  listen(desk.hardware);
  desk.hardware.events.announce(HardwareNotice::didWake);
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::didWake, HardwareNotice::screenParameters));
}

TEST_F(SharedHardwareTest, AProcessThatMissedManyEventsGetsTheLatest) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  two.hardware.events.follow();
  listen(two.hardware);
  one.hardware.events.announce(HardwareNotice::didWake);
  for (int i = 0; i < 256; ++i) one.hardware.events.announce(HardwareNotice::screensDidWake);
  two.hardware.events.deliver();
  EXPECT_EQ(notices, std::vector(256, HardwareNotice::screensDidWake));
}

TEST_F(SharedHardwareTest, EventsGoOnWhenTheFolderWasEmptied) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  for (int i = 0; i < 3; ++i) one.hardware.events.announce(HardwareNotice::didWake);
  two.hardware.events.follow();
  listen(two.hardware);
  std::filesystem::remove_all(state);
  one.hardware.events.announce(HardwareNotice::appearance);
  two.hardware.events.deliver();
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, EventsThatCouldNotBeWrittenAreDeliveredInTheirProcessAndHideNoOthers) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.events.announce(HardwareNotice::appearance);
  two.hardware.events.follow();
  listen(two.hardware);
  std::filesystem::create_directory(state / "events.json.new");
  two.hardware.events.announce(HardwareNotice::didWake);
  two.hardware.events.announce(HardwareNotice::screensDidWake);
  EXPECT_THAT(std::exchange(notices, {}),
              ElementsAre(HardwareNotice::didWake, HardwareNotice::screensDidWake));
  std::filesystem::remove(state / "events.json.new");
  one.hardware.events.announce(HardwareNotice::screenParameters);
  two.hardware.events.deliver();
  EXPECT_THAT(std::exchange(notices, {}), ElementsAre(HardwareNotice::screenParameters));
  one.hardware.events.announce(HardwareNotice::didWake);
  two.hardware.events.announce(HardwareNotice::appearance);
  EXPECT_THAT(notices, ElementsAre(HardwareNotice::didWake, HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, AQueueWithAnEventOfNoKindIsSetAside) {
  for (const std::string odd : {"{}", R"({"down": true})", R"({"key": 0, "down": true})",
                                R"({"notice": "did-wake", "key": 5, "down": true})",
                                R"({"key": 5})", R"({"tapTimeout": false})"}) {
    FolderDesk desk(deskText, state);
    desk.hardware.events.announce(HardwareNotice::didWake);
    std::string text = stateOf("events");
    const auto start = text.find("{\"notice\"");
    text.replace(start, text.find('}', start) + 1 - start, odd);
    std::ofstream(state / "events.json") << text;
    desk.hardware.events.follow();
    ASSERT_THAT(*desk.lines, SizeIs(1)) << odd;
    EXPECT_THAT(desk.lines->front(), HasSubstr("can't be read (/state/events/0"));
  }
}

TEST_F(SharedHardwareTest, ATapThatIsTimedOutByAnotherProcessIsDisabledAndNotified) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  std::vector<std::uint32_t> types;
  const auto tap = two.hardware.input.taps.add([&](const TapEvent& event) {
    types.push_back(event.type);
    return TapVerdict::passThrough;
  });
  tap->isEnabled = true;
  two.hardware.events.follow();
  one.hardware.events.announce(TapTimeout{});
  two.hardware.events.deliver();
  EXPECT_THAT(types, ElementsAre(TapEvent::disabledByTimeout));
  EXPECT_FALSE(tap->isEnabled);
}

TEST_F(SharedHardwareTest, EachVersionOfAStateIsSeenHoweverFastTheyFollow) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  for (std::uint16_t level = 0; level < 500; ++level) {
    one.hardware.monitors.setLevelByButtons(2, 65000);
    two.hardware.monitors.state(2);
    one.hardware.monitors.setLevelByButtons(2, static_cast<std::uint16_t>(10000 + level));
    one.hardware.monitors.setLevelByButtons(2, static_cast<std::uint16_t>(20000 + level));
    ASSERT_EQ(two.hardware.monitors.state(2)->shownLevel, 20000 + level);
  }
}

}  // namespace
}  // namespace brivane
