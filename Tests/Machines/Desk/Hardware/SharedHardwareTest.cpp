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
    for (const auto& display : *hardware.displays()) identifiers.push_back(display.identifier);
    return identifiers;
  }

  std::string stateOf(const std::string& name) const {
    return TemporaryFolder::read(state / (name + ".json"));
  }

  /// What `hardware` is told of from now on.
  std::vector<HardwareNotice>& listen(DeskHardware& hardware) {
    observations.push_back(
        hardware.observe([this](HardwareNotice notice) { told.push_back(notice); }));
    return told;
  }

  TemporaryFolder folder;
  const std::filesystem::path state = folder / "state";
  std::vector<HardwareNotice> told;
  std::vector<Observation> observations;
};

TEST_F(SharedHardwareTest, ADisplayUnpluggedByOneProcessIsGoneForAllAndCanBePluggedInByAny) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  ASSERT_THAT(attached(two.hardware), ElementsAre(1, 2, 3));
  ASSERT_TRUE(one.hardware.unplug(2));
  EXPECT_THAT(attached(two.hardware), ElementsAre(1, 3));
  EXPECT_NE(two.hardware.writeI2C(2, 0x37, 0x51, forty, two.runtime.now()), 0);
  EXPECT_FALSE(two.hardware.unplug(2));
  ASSERT_TRUE(two.hardware.replug(2));
  EXPECT_THAT(attached(one.hardware), ElementsAre(1, 2, 3)) << "in its old place";
  EXPECT_EQ(one.hardware.writeI2C(2, 0x37, 0x51, forty, one.runtime.now()), 0);
  FolderDesk later(deskText, state);
  later.hardware.unplug(1);
  EXPECT_THAT(attached(FolderDesk(deskText, state).hardware), ElementsAre(2, 3));
}

TEST_F(SharedHardwareTest, FramePortHeadroomAndNumberOfAScreenAreShared) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.setFrame(2, {-1920, 0.5, 800, 600});
  one.hardware.setHeadroom(2, 1.6);
  one.hardware.setScreenPresence(2, ScreenPresence::unnumbered);
  one.hardware.swapPorts(2, 3);
  const auto display = two.hardware.display(2);
  ASSERT_NE(display, nullptr);
  EXPECT_EQ(display->frame, (Rect{-1920, 0.5, 800, 600}));
  EXPECT_EQ(display->headroom, 1.6);
  EXPECT_EQ(display->screen, ScreenPresence::unnumbered);
  EXPECT_EQ(display->port, "dispext1");
  EXPECT_EQ(two.hardware.display(3)->port, "dispext0");
  EXPECT_EQ(two.hardware.display(3)->headroom, 2) << "untouched";
}

TEST_F(SharedHardwareTest, SleepMoodGrantAppearancePointerAndRefusalsAreShared) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.setMood(2, MonitorMood::silent);
  one.hardware.setAccessibilityGranted(false);
  one.hardware.setAppearance(DeskAppearance::dark);
  one.hardware.movePointer({5, 6});
  one.hardware.refuseGamma(2, 2);
  one.hardware.sleepSystem();
  EXPECT_EQ(two.hardware.monitor(2)->mood, MonitorMood::silent);
  EXPECT_TRUE(two.hardware.monitor(3)->isAsleep);
  EXPECT_TRUE(two.hardware.isSystemAsleep());
  EXPECT_NE(two.hardware.writeI2C(3, 0x37, 0x51, forty, two.runtime.now()), 0);
  EXPECT_FALSE(two.hardware.isAccessibilityGranted());
  EXPECT_EQ(two.hardware.appearance(), DeskAppearance::dark);
  EXPECT_EQ(two.hardware.pointer(), (Point{5, 6}));
  const GammaTable dark = {GammaCurve{0, 0.5F}, GammaCurve{0, 0.5F}, GammaCurve{0, 0.5F}};
  EXPECT_FALSE(two.hardware.setGammaTable(2, dark));
  EXPECT_FALSE(one.hardware.setGammaTable(2, dark)) << "the second of two";
  EXPECT_TRUE(two.hardware.setGammaTable(2, dark));
  two.hardware.wakeSystem(two.runtime.now());
  EXPECT_FALSE(one.hardware.isSystemAsleep());
  EXPECT_EQ(one.hardware.writeI2C(3, 0x37, 0x51, forty, one.runtime.now()), 0);
}

TEST_F(SharedHardwareTest, AKeyThatOneProcessPressesIsDownForAll) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  EXPECT_TRUE(one.hardware.putKeyDown(0x70000006E, 0x70000006F));
  EXPECT_FALSE(two.hardware.putKeyDown(0x70000006E, 0x70000006E));
  EXPECT_THAT(two.hardware.keysDown().arrived,
              ElementsAre(std::pair(HIDUsage{0x70000006E}, HIDUsage{0x70000006F})));
  EXPECT_EQ(two.hardware.takeKeyUp(0x70000006E), 0x70000006F);
  EXPECT_EQ(one.hardware.takeKeyUp(0x70000006E), std::nullopt);
}

TEST_F(SharedHardwareTest, EditingAFrameInTheDeskFilePlugsEverythingInAsTheFileSays) {
  FolderDesk(deskText, state).hardware.unplug(2);
  std::string edited = deskText;
  edited.replace(edited.find("\"headroom\": 2"), 13, "\"headroom\": 3");
  EXPECT_THAT(attached(FolderDesk(edited, state).hardware), ElementsAre(1, 2, 3));
}

TEST_F(SharedHardwareTest, EditingAFirmwareInTheDeskFilePlugsNothingIn) {
  FolderDesk(deskText, state).hardware.unplug(2);
  std::string edited = deskText;
  edited.replace(edited.find("\"level\": 30"), 11, "\"level\": 31");
  FolderDesk desk(edited, state);
  EXPECT_THAT(attached(desk.hardware), ElementsAre(1, 3));
  ASSERT_TRUE(desk.hardware.replug(2));
  EXPECT_EQ(desk.hardware.monitor(2)->shownLevel, 31);
}

TEST_F(SharedHardwareTest, GrantAndAppearanceStartAfreshWhenTheirOwnSectionsAreEdited) {
  const auto text = [](const char* grant, const char* appearance) {
    return std::string(R"({"grants": {"accessibility": )") + grant + R"(}, "appearance": ")" +
           appearance + "\"}";
  };
  {
    FolderDesk desk(text("true", "light"), state);
    desk.hardware.setAccessibilityGranted(false);
    desk.hardware.setAppearance(DeskAppearance::dark);
  }
  FolderDesk same(text("true", "light"), state);
  EXPECT_FALSE(same.hardware.isAccessibilityGranted());
  EXPECT_EQ(same.hardware.appearance(), DeskAppearance::dark);
  FolderDesk darkFile(text("true", "dark"), state);
  darkFile.hardware.setAppearance(DeskAppearance::light);
  FolderDesk edited(text("true", "light"), state);
  EXPECT_EQ(edited.hardware.appearance(), DeskAppearance::light);
  EXPECT_FALSE(edited.hardware.isAccessibilityGranted()) << "its section is the same";
}

TEST_F(SharedHardwareTest, AnArrangementThatMakesNoSenseIsSetAsideAndEverythingIsPluggedIn) {
  FolderDesk(deskText, state).hardware.unplug(2);
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

TEST_F(SharedHardwareTest, ADisplayThatOnlyOneProcessHasSurvivesTheChangesOfOthers) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  const auto other = deskFrom(R"({"displays": [{"identifier": 9}]})");
  ASSERT_TRUE(one.hardware.plug(other.displays.front()));
  EXPECT_THAT(attached(two.hardware), ElementsAre(1, 2, 3));
  two.hardware.unplug(1);
  EXPECT_THAT(attached(one.hardware), ElementsAre(2, 3, 9));
}

TEST_F(SharedHardwareTest, AProcessThatFollowsGetsAllLaterEventsInOrder) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.unplug(2);
  two.hardware.follow();
  listen(two.hardware);
  two.hardware.meetEvents();
  EXPECT_THAT(told, IsEmpty()) << "that was before";
  one.hardware.sleepSystem();
  one.hardware.wakeSystem(one.runtime.now());
  one.hardware.replug(2);
  one.hardware.setAppearance(DeskAppearance::dark);
  EXPECT_THAT(told, IsEmpty());
  two.hardware.meetEvents();
  EXPECT_THAT(told, ElementsAre(HardwareNotice::didWake, HardwareNotice::screensDidWake,
                                HardwareNotice::screenParameters, HardwareNotice::appearance));
  two.hardware.meetEvents();
  EXPECT_THAT(told, SizeIs(4)) << "once each";
}

TEST_F(SharedHardwareTest, ItsOwnEventsComeAtOnceAndAfterEarlierOnesOfOthers) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  two.hardware.follow();
  listen(two.hardware);
  one.hardware.announce(HardwareNotice::didWake);
  two.hardware.setAppearance(DeskAppearance::dark);
  EXPECT_THAT(told, ElementsAre(HardwareNotice::didWake, HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, AnEventThatAnObserverCausesIsDeliveredAfterwards) {
  FolderDesk desk(deskText, state);
  desk.hardware.follow();
  const auto waking = desk.hardware.observe([&](HardwareNotice notice) {
    if (notice == HardwareNotice::didWake) desk.hardware.unplug(3);
  });
  listen(desk.hardware);
  desk.hardware.announce(HardwareNotice::didWake);
  EXPECT_THAT(told, ElementsAre(HardwareNotice::didWake, HardwareNotice::screenParameters));
}

TEST_F(SharedHardwareTest, AProcessThatMissedManyEventsGetsTheLatest) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  two.hardware.follow();
  listen(two.hardware);
  one.hardware.announce(HardwareNotice::didWake);
  for (int i = 0; i < 256; ++i) one.hardware.announce(HardwareNotice::screensDidWake);
  two.hardware.meetEvents();
  EXPECT_EQ(told, std::vector(256, HardwareNotice::screensDidWake));
}

TEST_F(SharedHardwareTest, EventsGoOnWhenTheFolderWasEmptied) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  for (int i = 0; i < 3; ++i) one.hardware.announce(HardwareNotice::didWake);
  two.hardware.follow();
  listen(two.hardware);
  std::filesystem::remove_all(state);
  one.hardware.announce(HardwareNotice::appearance);
  two.hardware.meetEvents();
  EXPECT_THAT(told, ElementsAre(HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, EventsThatCouldNotBeWrittenAreDeliveredInTheirProcessAndHideNoOthers) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  one.hardware.announce(HardwareNotice::appearance);
  two.hardware.follow();
  listen(two.hardware);
  std::filesystem::create_directory(state / "events.json.new");
  two.hardware.announce(HardwareNotice::didWake);
  two.hardware.announce(HardwareNotice::screensDidWake);
  EXPECT_THAT(std::exchange(told, {}),
              ElementsAre(HardwareNotice::didWake, HardwareNotice::screensDidWake));
  std::filesystem::remove(state / "events.json.new");
  one.hardware.announce(HardwareNotice::screenParameters);
  two.hardware.meetEvents();
  EXPECT_THAT(std::exchange(told, {}), ElementsAre(HardwareNotice::screenParameters));
  one.hardware.announce(HardwareNotice::didWake);
  two.hardware.announce(HardwareNotice::appearance);
  EXPECT_THAT(told, ElementsAre(HardwareNotice::didWake, HardwareNotice::appearance));
}

TEST_F(SharedHardwareTest, AQueueWithAnEventOfNoKindIsSetAside) {
  for (const std::string odd : {"{}", R"({"down": true})", R"({"key": 0, "down": true})",
                                R"({"notice": "did-wake", "key": 5, "down": true})",
                                R"({"key": 5})", R"({"tapTimeout": false})"}) {
    FolderDesk desk(deskText, state);
    desk.hardware.announce(HardwareNotice::didWake);
    std::string text = stateOf("events");
    const auto start = text.find("{\"notice\"");
    text.replace(start, text.find('}', start) + 1 - start, odd);
    std::ofstream(state / "events.json") << text;
    desk.hardware.follow();
    ASSERT_THAT(*desk.lines, SizeIs(1)) << odd;
    EXPECT_THAT(desk.lines->front(), HasSubstr("can't be read (/state/events/0"));
  }
}

TEST_F(SharedHardwareTest, ATapThatIsTimedOutByAnotherProcessIsDisabledAndNotified) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  std::vector<std::uint32_t> types;
  const auto tap = two.hardware.input().taps.add([&](const TapEvent& event) {
    types.push_back(event.type);
    return TapVerdict::passThrough;
  });
  tap->isEnabled = true;
  two.hardware.follow();
  one.hardware.timeOutTaps();
  two.hardware.meetEvents();
  EXPECT_THAT(types, ElementsAre(TapEvent::disabledByTimeout));
  EXPECT_FALSE(tap->isEnabled);
}

TEST_F(SharedHardwareTest, EachVersionOfAStateIsSeenHoweverFastTheyFollow) {
  FolderDesk one(deskText, state);
  FolderDesk two(deskText, state);
  for (std::uint16_t level = 0; level < 500; ++level) {
    one.hardware.setLevelByButtons(2, 65000);
    two.hardware.monitor(2);
    one.hardware.setLevelByButtons(2, static_cast<std::uint16_t>(10000 + level));
    one.hardware.setLevelByButtons(2, static_cast<std::uint16_t>(20000 + level));
    ASSERT_EQ(two.hardware.monitor(2)->shownLevel, 20000 + level);
  }
}

}  // namespace
}  // namespace brivane
