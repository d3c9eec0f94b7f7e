#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Machines/Desk/LiveDesk/DeskControls.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LiveControlsTest : public testing::Test {
 protected:
  static std::string titleOf(const LiveControl& control) {
    return std::visit([](const auto& kind) { return kind.title; }, control);
  }

  static std::vector<std::string> titles(const LiveControls& controls) {
    std::vector<std::string> all(controls.controls.size());
    std::ranges::transform(controls.controls, all.begin(), titleOf);
    return all;
  }

  /// As it is now, found by its title.
  template <typename Kind>
  static Kind control(const LiveControls& controls, const std::string& title) {
    for (const auto& one : controls.controls) {
      if (titleOf(one) == title) return std::get<Kind>(one);
    }
    ADD_FAILURE() << "no " << title;
    return {};
  }

  LiveControls strip(DisplayID display = 2) const {
    return monitorControls(hardware, display, desk.time());
  }
  LiveControls panel() const { return machineControls(hardware, desk.time()); }

  static void press(const LiveControls& controls, const std::string& title) {
    if (const auto button = control<LiveButton>(controls, title); button.press) button.press();
  }
  static void choose(const LiveControls& controls, const std::string& title,
                     const std::string& option) {
    const auto choice = control<LiveChoice>(controls, title);
    const auto found = std::ranges::find(choice.options, option);
    ASSERT_NE(found, choice.options.end()) << option;
    choice.choose(static_cast<std::size_t>(found - choice.options.begin()));
  }
  static std::string chosen(const LiveControls& controls, const std::string& title) {
    const auto choice = control<LiveChoice>(controls, title);
    return choice.options.at(choice.chosen);
  }

  TestDesk desk{R"({"displays": [
    {"identifier": 1, "builtIn": true, "headroom": 3},
    {"identifier": 2, "name": "Halden H27", "firmware": {"level": 153, "maximum": 255}}]})"};
  DeskHardware& hardware = *desk.hardware;
};

TEST_F(LiveControlsTest, AMonitorsStripTellsItsLevelAndItsWrites) {
  EXPECT_EQ(strip().title, "[2] Halden H27");
  EXPECT_THAT(strip().status, ElementsAre("153 of 255, 0 writes"));
  EXPECT_THAT(titles(strip()), ElementsAre("−", "+", "Mood", "Sleep", "Headroom"));
  const std::array<std::uint8_t, 6> setForty = {0x84, 0x03, 0x10, 0x00, 0x28, 0xD1};
  hardware.monitors.writeI2C(2, 0x37, 0x51, setForty, desk.time().now());
  EXPECT_THAT(strip().status, ElementsAre("40 of 255, 1 write"));
}

TEST_F(LiveControlsTest, ItsButtonsGoATenthAndStopAtTheEnds) {
  press(strip(), "+");
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 178);
  for (int i = 0; i < 5; ++i) press(strip(), "+");
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 255);
  for (int i = 0; i < 20; ++i) press(strip(), "−");
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 0);
  EXPECT_EQ(hardware.monitors.state(2)->writeCount, 0u) << "a person's presses are not counted";
}

TEST_F(LiveControlsTest, ItsMoodIsOneOfNine) {
  EXPECT_EQ(chosen(strip(), "Mood"), "answering");
  EXPECT_EQ(control<LiveChoice>(strip(), "Mood").options.size(), 9u);
  choose(strip(), "Mood", "garbled");
  EXPECT_EQ(hardware.monitors.state(2)->mood, MonitorMood::garbled);
  EXPECT_EQ(chosen(strip(), "Mood"), "garbled");
}

TEST_F(LiveControlsTest, ItSleepsAndWakes) {
  press(strip(), "Sleep");
  EXPECT_TRUE(hardware.monitors.state(2)->isAsleep);
  EXPECT_THAT(strip().status, ElementsAre("153 of 255, 0 writes, asleep"));
  press(strip(), "Wake");
  EXPECT_FALSE(hardware.monitors.state(2)->isAsleep);
}

TEST_F(LiveControlsTest, ABuiltInPanelHasNoButtonsOfItsOwn) {
  EXPECT_THAT(strip(1).status, ElementsAre("Level 0.5"));
  EXPECT_THAT(titles(strip(1)), ElementsAre("Headroom"));
}

TEST_F(LiveControlsTest, HeadroomOffersTheUsualValuesAndItsOwn) {
  EXPECT_THAT(control<LiveChoice>(strip(1), "Headroom").options,
              ElementsAre("1", "1.6", "2", "3", "4"));
  EXPECT_EQ(chosen(strip(1), "Headroom"), "3");
  choose(strip(1), "Headroom", "1.6");
  EXPECT_EQ(hardware.displays.find(1)->headroom, 1.6);
}

TEST_F(LiveControlsTest, AnUnpluggedDisplayHasNoStripAndCanBePluggedInAtThePanel) {
  EXPECT_THAT(titles(panel()), ElementsAre("Sleep", "Screens Off", "Appearance", "Accessibility"));
  const auto old = strip();
  hardware.changes.unplug(2);
  EXPECT_THAT(strip().controls, IsEmpty());
  press(old, "+");
  press(panel(), "Plug In [2] Halden H27");
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 153) << "a button of a window that is closing";
  EXPECT_EQ(strip().title, "[2] Halden H27");
}

TEST_F(LiveControlsTest, TheMachineSleepsAndWakes) {
  EXPECT_THAT(panel().status, ElementsAre("Awake"));
  press(panel(), "Sleep");
  EXPECT_TRUE(hardware.system.isAsleep());
  EXPECT_THAT(panel().status, ElementsAre("Asleep"));
  EXPECT_THAT(titles(panel()), ElementsAre("Wake", "Appearance", "Accessibility"));
  press(panel(), "Wake");
  EXPECT_FALSE(hardware.system.isAsleep());
  EXPECT_FALSE(hardware.monitors.state(2)->isAsleep);
}

TEST_F(LiveControlsTest, ScreensGoOffAndOnByThemselves) {
  press(panel(), "Screens Off");
  EXPECT_TRUE(hardware.monitors.state(2)->isAsleep);
  EXPECT_FALSE(hardware.system.isAsleep());
  press(panel(), "Screens On");
  EXPECT_FALSE(hardware.monitors.state(2)->isAsleep);
}

TEST_F(LiveControlsTest, AppearanceAndGrantAreTheUsers) {
  EXPECT_EQ(chosen(panel(), "Appearance"), "light");
  choose(panel(), "Appearance", "dark");
  EXPECT_EQ(hardware.system.appearance(), DeskAppearance::dark);
  EXPECT_EQ(chosen(panel(), "Accessibility"), "granted");
  choose(panel(), "Accessibility", "revoked");
  EXPECT_FALSE(hardware.system.isAccessibilityGranted());
  EXPECT_EQ(chosen(panel(), "Accessibility"), "revoked");
}

}  // namespace
}  // namespace brivane
