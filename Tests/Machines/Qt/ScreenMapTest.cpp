#include <gtest/gtest.h>

#include "Machines/Qt/Toolkit/ScreenMap.h"

namespace brivane {
namespace {

Screen screen(double x, double y, double width, double height) {
  return {.number = std::nullopt, .frame = {x, y, width, height}, .localizedName = ""};
}

TEST(ScreenMap, OnARealMachineEveryPointHasItsPixel) {
  // The main screen stands to the right of a smaller one whose upper edge is 200 lower.
  const std::vector<Screen> screens = {screen(0, 0, 1920, 1080), screen(-1280, 160, 1280, 720)};
  const QRect desktop(0, 0, 3200, 1080);
  EXPECT_EQ(placeOnDesktop({780, 130, 360, 54}, screens, desktop, 1),
            QRect(1280 + 780, 1080 - 130 - 54, 360, 54));
  EXPECT_EQ(placeOnDesktop({-820, 290, 360, 54}, screens, desktop, 1),
            QRect(460, 1080 - 290 - 54, 360, 54));
}

TEST(ScreenMap, AScreenBelowTheMainOneHasNegativeHeights) {
  const std::vector<Screen> screens = {screen(0, 0, 1920, 1080), screen(0, -1200, 1600, 1200)};
  EXPECT_EQ(placeOnDesktop({620, -1070, 360, 54}, screens, QRect(0, 0, 1920, 2280), 1),
            QRect(620, 2280 - 130 - 54, 360, 54));
}

TEST(ScreenMap, AtTwoPixelsPerPointAWindowGrowsUpwardsFromTheMiddleOfItsLowerEdge) {
  EXPECT_EQ(
      placeOnDesktop({1740, 130, 360, 54}, {screen(0, 0, 3840, 2160)}, QRect(0, 0, 3840, 2160), 2),
      QRect(1920 - 360, 2160 - 130 - 108, 720, 108));
}

TEST(ScreenMap, TheScreensOfASimulatedMachineAreScaledToTheDesktop) {
  const std::vector<Screen> screens = {screen(0, 0, 4000, 2000), screen(4000, 0, 4000, 2000)};
  EXPECT_EQ(placeOnDesktop({5820, 130, 360, 54}, screens, QRect(0, 0, 1600, 400), 1),
            QRect(1200 - 180, 400 - 26 - 54, 360, 54));
}

TEST(ScreenMap, WithoutScreensTheDesktopTakesTheirPlace) {
  EXPECT_EQ(placeOnDesktop({0, 0, 360, 54}, {}, QRect(0, 0, 800, 600), 1), QRect(0, 546, 360, 54));
}

}  // namespace
}  // namespace brivane
