#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/LiveDesk/DeskLiveView.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t upKey = 126;
constexpr std::uint16_t control = 59;

class DeskLiveViewTest : public testing::Test {
 protected:
  DeskLiveViewTest() { shown.setRoom({{0, 0, 1000, 600}, 100, 60}); }

  std::vector<DisplayID> displays() {
    std::vector<DisplayID> all;
    for (const auto& monitor : shown.monitors()) all.push_back(monitor.display);
    return all;
  }
  LivePlace place(DisplayID display) {
    for (const auto& monitor : shown.monitors()) {
      if (monitor.display == display) return monitor.place;
    }
    ADD_FAILURE() << "no window of " << display;
    return {};
  }

  TestDesk desk{R"({"displays": [
    {"identifier": 1, "builtIn": true, "frame": {"x": 0, "y": 0, "width": 2000, "height": 1000}},
    {"identifier": 2, "name": "Halden H27", "firmware": {"level": 50},
     "frame": {"x": -2000, "y": 0, "width": 2000, "height": 1000}}]})"};
  DeskHardware& hardware = *desk.hardware;
  DeskLiveView shown{*desk.machine};
};

TEST_F(DeskLiveViewTest, EachMonitorThatIsPluggedInHasAWindow) {
  EXPECT_THAT(displays(), ElementsAre(1, 2));
  EXPECT_EQ(place(2), (LivePlace{2, 177, 496, 246}));
  shown.unplug(2);
  EXPECT_THAT(displays(), ElementsAre(1));
  hardware.changes.plug(2);
  EXPECT_EQ(place(2), (LivePlace{2, 177, 496, 246})) << "at its old place";
}

TEST_F(DeskLiveViewTest, UnpluggingOneLeavesTheOthersInTheirPlaces) {
  const LivePlace before = place(1);
  shown.unplug(2);
  EXPECT_EQ(place(1), before);
}

TEST_F(DeskLiveViewTest, AMovedWindowRearrangesAndItsPlaceIsTheNewFrames) {
  shown.monitors();
  const auto trace = desk.trace();
  shown.windowMoved(2, 202, 327);
  EXPECT_EQ(hardware.displays.find(2)->frame, (Rect{-1200, -600, 2000, 1000}));
  EXPECT_THAT(*trace,
              ElementsAre("display 2 frame -1200 -600 2000 1000", "notice screen-parameters"));
  EXPECT_EQ(place(2), (LivePlace{202, 327, 496, 246}));
}

TEST_F(DeskLiveViewTest, AWindowThatIsWhereItBelongsRearrangesNothing) {
  const LivePlace now = place(2);
  const auto trace = desk.trace();
  shown.windowMoved(2, now.x, now.y);
  EXPECT_THAT(*trace, IsEmpty());
}

TEST_F(DeskLiveViewTest, AWindowDraggedOverTheEdgeLeavesTheOthersInTheirPlaces) {
  const LivePlace before = place(1);
  shown.windowMoved(2, -200, 500);
  EXPECT_EQ(place(1), before);
  EXPECT_EQ(place(2).x, -200);
}

TEST_F(DeskLiveViewTest, AWindowMovedCloseToAnotherTouchesIt) {
  shown.monitors();
  shown.windowMoved(2, 5, 181);
  EXPECT_EQ(hardware.displays.find(2)->frame, (Rect{-2000, 0, 2000, 1000}));
}

TEST_F(DeskLiveViewTest, AnArrangementThatNoLongerFitsIsLaidOutAgain) {
  const LivePlace before = place(1);
  hardware.changes.setFrame(2, {-2000, -300, 2000, 1000});
  EXPECT_EQ(place(1), before) << "there is room";
  hardware.changes.setFrame(2, {-6000, 0, 2000, 1000});
  EXPECT_EQ(place(1).width, 246);
  EXPECT_EQ(place(2).x, 2);
}

TEST_F(DeskLiveViewTest, APictureIsMadeAnewOnlyWhenThePanelShowsAnother) {
  const auto first = shown.picture(2, 32, 20);
  ASSERT_EQ(first->pixels.size(), 640u);
  hardware.changes.setHeadroom(1, 3);
  hardware.system.movePointer({5, 5});
  EXPECT_EQ(shown.picture(2, 32, 20), first);
  hardware.monitors.setLevelByButtons(2, 90);
  const auto brighter = shown.picture(2, 32, 20);
  EXPECT_GT(brighter->pixels.front() & 0xFFU, first->pixels.front() & 0xFFU);
  const GammaCurve noBlue = {0, 0};
  hardware.gamma.setTable(2, {GammaCurve{0, 1}, GammaCurve{0, 1}, noBlue});
  EXPECT_EQ(shown.picture(2, 32, 20)->pixels.front() & 0xFFU, 0u);
  EXPECT_EQ(shown.picture(2, 16, 10)->pixels.size(), 160u);
  hardware.changes.unplug(2);
  EXPECT_EQ(shown.picture(2, 32, 20), nullptr);
}

TEST_F(DeskLiveViewTest, ThePointerIsTakenToTheSpot) {
  shown.movePointer({2, 0.25, 0.9});
  EXPECT_EQ(hardware.system.pointer(), (Point{-1500, 100}));
  const auto spot = shown.spotAt({-1500, 100});
  ASSERT_TRUE(spot.has_value());
  EXPECT_EQ(spot->display, 2u);
  EXPECT_DOUBLE_EQ(spot->x, 0.25);
  EXPECT_DOUBLE_EQ(spot->y, 0.9);
  EXPECT_FALSE(shown.spotAt({9000, 9000}).has_value());
  const auto trace = desk.trace();
  shown.movePointer({2, 0.25, 0.9});
  shown.movePointer({7, 0, 0});
  EXPECT_THAT(*trace, IsEmpty());
}

TEST_F(DeskLiveViewTest, TheMachineConsumesAHotkeyAndPassesOtherKeysOn) {
  std::vector<HotkeyEvent> heard;
  desk.machine->hotkeys().installHandler(
      [&](HotkeyEvent event, HotkeyID) { heard.push_back(event); });
  desk.machine->hotkeys().registerHotkey(upKey, 4096, {1, 9});
  EXPECT_TRUE(shown.pressKey(upKey)) << "without its modifier";
  shown.releaseKey(upKey);
  EXPECT_TRUE(shown.pressKey(control)) << "a modifier is everybody's";
  EXPECT_FALSE(shown.pressKey(upKey));
  EXPECT_TRUE(desk.machine->keyboard().isKeyDown(upKey));
  shown.releaseKey(upKey);
  shown.releaseKey(control);
  EXPECT_FALSE(desk.machine->keyboard().isKeyDown(upKey));
  EXPECT_THAT(heard, ElementsAre(HotkeyEvent::pressed, HotkeyEvent::released));
}

TEST_F(DeskLiveViewTest, ABrightnessKeyReachesTheSystem) {
  const auto trace = desk.trace();
  shown.pressBrightness(LiveBrightnessKey::up);
  shown.releaseBrightness(LiveBrightnessKey::up);
  EXPECT_THAT(*trace, testing::Contains("system brightness up, level 0.5625"));
}

TEST_F(DeskLiveViewTest, ChangesAreAnnouncedSoonAndMerged) {
  int told = 0;
  const auto observation = shown.observe([&] { ++told; });
  hardware.changes.setFrame(2, {-2100, 0, 2000, 1000});
  hardware.changes.setHeadroom(2, 2);
  EXPECT_EQ(told, 0) << "whoever made it may be in the middle of something";
  desk.time().settle();
  EXPECT_EQ(told, 1);
}

TEST(DeskLiveViewInAFolder, ThePictureLiesBesideTheDeskFileAndIsNeverTheDeskFile) {
  const TemporaryFolder folder;
  for (const auto& [file, picture] : {std::pair{"my-desk.json", "my-desk.png"},
                                      {"plain", "plain.png"},
                                      {"my.desk", "my.desk.png"},
                                      {"desk.png", "desk.png.png"}}) {
    const auto machine = std::get<std::unique_ptr<DeskMachine>>(
        openDesk(folder.write(file, R"({"displays": [{"identifier": 1}]})")));
    EXPECT_EQ(DeskLiveView(*machine).pictureFile(), folder.path / picture);
  }
}

TEST_F(DeskLiveViewTest, InMemoryThereIsNoPictureFile) {
  EXPECT_EQ(shown.pictureFile(), std::nullopt);
}

}  // namespace
}  // namespace brivane
