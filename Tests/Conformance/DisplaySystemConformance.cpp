#include <gmock/gmock.h>

#include <thread>

#include "Tests/Conformance/MachineUnderTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

using DisplaySystemConformance = MachineConformance;

TEST_F(DisplaySystemConformance, TheCountIsThatOfTheList) {
  DisplaySystem& displays = machine.displays();
  const auto count = displays.onlineDisplayCount();
  ASSERT_TRUE(count.has_value());
  EXPECT_EQ(*count, underTest->expectedDisplays().size());
  EXPECT_EQ(displays.onlineDisplayList(*count)->size(), *count);
  EXPECT_EQ(displays.onlineDisplayList(*count + 10)->size(), *count);
}

TEST_F(DisplaySystemConformance, AListIsCutAtItsMaximumInTheSameOrder) {
  DisplaySystem& displays = machine.displays();
  const auto all = *displays.onlineDisplayList(100);
  EXPECT_THAT(*displays.onlineDisplayList(1), ElementsAre(all.front()));
  EXPECT_THAT(*displays.onlineDisplayList(0), IsEmpty());
}

TEST_F(DisplaySystemConformance, EveryOnlineDisplayHasAScreenAndNoneIsZero) {
  EXPECT_THAT(displayIDs(), UnorderedElementsAreArray(*machine.displays().onlineDisplayList(100)));
  EXPECT_THAT(displayIDs(), testing::Not(testing::Contains(0u)));
}

TEST_F(DisplaySystemConformance, DisplaysHaveTheIdentitiesOfTheirPanels) {
  DisplaySystem& displays = machine.displays();
  const auto expected = underTest->expectedDisplays();
  const auto ids = displayIDs();
  ASSERT_EQ(ids.size(), expected.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    EXPECT_EQ(displays.isBuiltIn(ids[i]), expected[i].isBuiltIn) << expected[i].name;
    EXPECT_EQ(displays.panelIdentity(ids[i]), expected[i].panel) << expected[i].name;
  }
}

TEST_F(DisplaySystemConformance, UnknownDisplaysAreNotBuiltIn) {
  DisplaySystem& displays = machine.displays();
  for (const DisplayID unknown : {unknownDisplay(), DisplayID{0}}) {
    EXPECT_FALSE(displays.isBuiltIn(unknown));
  }
}

TEST_F(DisplaySystemConformance, TheFirstScreenHasTheMenuBarAndItsLowerLeftCornerIsTheOrigin) {
  const auto screens = machine.displays().screens();
  ASSERT_FALSE(screens.empty());
  EXPECT_EQ(screens.front().frame.x, 0);
  EXPECT_EQ(screens.front().frame.y, 0);
}

TEST_F(DisplaySystemConformance, ScreensHaveNamesAndHeadroomOfAtLeastOne) {
  const auto screens = machine.displays().screens();
  const auto expected = underTest->expectedDisplays();
  ASSERT_EQ(screens.size(), expected.size());
  for (std::size_t i = 0; i < screens.size(); ++i) {
    EXPECT_EQ(screens[i].localizedName, expected[i].name);
    EXPECT_EQ(screens[i].frame, expected[i].frame);
    EXPECT_GE(screens[i].potentialHeadroom, 1.0);
  }
}

TEST_F(DisplaySystemConformance, TheMainScreenIsOneOfTheScreens) {
  const auto main = machine.displays().mainScreen();
  ASSERT_TRUE(main.has_value());
  EXPECT_THAT(displayIDs(), testing::Contains(main->number.value_or(0)));
  for (const Screen& screen : machine.displays().screens()) {
    if (screen.number != main->number) continue;
    EXPECT_EQ(main->frame, screen.frame);
    EXPECT_EQ(main->localizedName, screen.localizedName);
  }
}

TEST_F(DisplaySystemConformance, ThePointerInAnyCornerPixelIsOnThatScreenAndNoOther) {
  const auto screens = machine.displays().screens();
  for (const Screen& screen : screens) {
    const Rect& frame = screen.frame;
    for (const double x : {frame.x, frame.x + frame.width - 1}) {
      for (const double y : {frame.y, frame.y + frame.height - 1}) {
        underTest->movePointer({x, y});
        const Point pointer = machine.displays().pointerPosition();
        for (const Screen& candidate : screens) {
          EXPECT_EQ(mouseInRect(pointer, candidate.frame), candidate.number == screen.number)
              << describe(pointer) << " for the pixel " << describe(Point{x, y});
        }
      }
    }
  }
}

TEST_F(DisplaySystemConformance, TwoThreadsMayAskAtOnce) {
  DisplaySystem& displays = machine.displays();
  const auto expected = displays.onlineDisplayList(100);
  const auto ask = [&] {
    for (int i = 0; i < 50; ++i) {
      EXPECT_EQ(displays.onlineDisplayList(100), expected);
      for (const DisplayID display : *expected) displays.panelIdentity(display);
    }
  };
  std::thread other(ask);
  ask();
  other.join();
}

}  // namespace
}  // namespace brivane
