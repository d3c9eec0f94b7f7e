#include <gtest/gtest.h>

#include <vector>

#include "Machines/Linux/X11/XCoordinates.h"

namespace brivane {
namespace {

constexpr XOutput output(int x, int y, int width, int height) {
  return {.x = x, .y = y, .width = width, .height = height};
}

TEST(XCoordinates, TheMainScreensLowerLeftIsTheOrigin) {
  const XOutput main = output(1600, 300, 1920, 1080);
  EXPECT_EQ(globalFrame(main, main), (Rect{0, 0, 1920, 1080}));
}

TEST(XCoordinates, OtherScreensLieAroundTheMainScreenWithYUpwards) {
  const XOutput main = output(100, 200, 40, 30);
  EXPECT_EQ(globalFrame(output(60, 200, 40, 30), main), (Rect{-40, 0, 40, 30}));
  EXPECT_EQ(globalFrame(output(140, 200, 50, 20), main), (Rect{40, 10, 50, 20}));
  EXPECT_EQ(globalFrame(output(100, 150, 40, 50), main), (Rect{0, 30, 40, 50}));
  EXPECT_EQ(globalFrame(output(100, 230, 40, 50), main), (Rect{0, -50, 40, 50}));
}

TEST(XCoordinates, EveryPixelLiesOnTheScreenThatShowsItAndOnNoOther) {
  const std::vector<XOutput> screens = {output(20, 9, 16, 12), output(0, 0, 20, 9),
                                        output(20, 0, 16, 9), output(36, 15, 8, 8),
                                        output(20, 21, 10, 5)};
  for (const XOutput& shown : screens) {
    for (int x = shown.x; x < shown.x + shown.width; ++x) {
      for (int y = shown.y; y < shown.y + shown.height; ++y) {
        const Point point = globalPoint(x, y, screens.front());
        for (const XOutput& screen : screens) {
          EXPECT_EQ(mouseInRect(point, globalFrame(screen, screens.front())), &screen == &shown)
              << "pixel " << x << ", " << y << " and the screen at " << screen.x << ", "
              << screen.y;
        }
      }
    }
  }
}

TEST(ConnectorName, ShowsWhetherAPanelIsBuiltIn) {
  for (const char* name : {"eDP-1", "eDP1", "eDP", "eDP-1-1", "LVDS-1", "LVDS1", "LVDS", "DSI-1"}) {
    EXPECT_TRUE(namesBuiltInPanel(name)) << name;
  }
  for (const char* name : {"DP-1", "DisplayPort-0", "HDMI-1", "HDMI-A-0", "DVI-D-0", "VGA-1",
                           "DUMMY0", "", "EDP-1", "XeDP-1", "eDPort", "DSIX", "Virtual-1", "ed"}) {
    EXPECT_FALSE(namesBuiltInPanel(name)) << name;
  }
}

}  // namespace
}  // namespace brivane
