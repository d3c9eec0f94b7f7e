// The HUD of the built program: its place, size and time, and that it takes no input.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/DesktopProcess.h"
#include "Tests/Support/ScreenReader.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t ground = 0x3060a0;

class HUDOnDesktopTest : public DesktopTest {
 protected:
  std::optional<SeenWindow> hud() {
    const auto found = testClient.find("Brivane");
    return found && found->box.height < 200 ? found : std::nullopt;
  }
  /// Presses the hotkey and gives the program time to draw.
  void keepShowing() {
    tapHotkey(xKey::down);
    std::this_thread::sleep_for(milliseconds(100));
  }
  /// Presses until the program knows a level to change.
  bool doesHUDShow() {
    return eventually([&] {
      keepShowing();
      return hud().has_value();
    });
  }
  /// Presses again and again: the monitor's level may not be known yet, and the HUD is shown
  /// briefly.
  bool isHUDAt(const PixelBox& box, int tolerance = 0) {
    return eventually([&] {
      keepShowing();
      const auto window = hud();
      if (window) lastSeen = window;
      // At these scales Qt rounds places to its own larger pixels.
      return window && window->box.width == box.width && window->box.height == box.height &&
             std::abs(window->box.x - box.x) <= tolerance &&
             std::abs(window->box.y - box.y) <= tolerance;
    });
  }
  std::optional<SeenWindow> lastSeen;
  static std::string text(const std::optional<SeenWindow>& window) {
    if (!window) return "none";
    const PixelBox& box = window->box;
    return std::to_string(box.width) + "x" + std::to_string(box.height) + " at " +
           std::to_string(box.x) + ", " + std::to_string(box.y);
  }
  void pointAtMiddle() { world.screens.movePointer(2500, 800); }

  /// The left monitor's lower middle, 130 pixels above its edge, in pixels of that scale.
  static PixelBox boxOnLeft(double scale) {
    const auto width = static_cast<int>(360 * scale);
    const auto height = static_cast<int>(54 * scale);
    return {800 - width / 2, 900 - 130 - height, width, height};
  }
};

TEST_F(HUDOnDesktopTest, ItShowsOnTheDisplayThatChanges) {
  start();
  ASSERT_TRUE(doesHUDShow());
  EXPECT_TRUE(isHUDAt({620, 716, 360, 54})) << text(lastSeen);
  pointAtMiddle();
  ASSERT_TRUE(isHUDAt({2380, 1196, 360, 54})) << text(lastSeen);
  EXPECT_TRUE(lastSeen->isUnmanaged);
  EXPECT_TRUE(eventually([&] {
    keepShowing();
    return testClient.topmost() == lastSeen->number;
  }));
}

TEST_F(HUDOnDesktopTest, ItIsGoneSomewhatMoreThanASecondAfterTheLastPress) {
  start();
  ASSERT_TRUE(doesHUDShow());
  const auto pressed = std::chrono::steady_clock::now();
  tapHotkey(xKey::up);
  ASSERT_TRUE(eventually([&] { return !hud(); }));
  EXPECT_GE(std::chrono::steady_clock::now() - pressed, milliseconds(1200));
}

TEST_F(HUDOnDesktopTest, AHeldKeyKeepsItUpWhileTheLevelSweeps) {
  start();
  ASSERT_TRUE(doesHUDShow());
  ASSERT_TRUE(isHUDAt({620, 716, 360, 54})) << text(lastSeen);
  const PixelBox box = lastSeen->box;
  const auto before = testClient.picture(box);
  for (const auto key : {xKey::control, xKey::option, xKey::up}) world.screens.pressKey(key);
  EXPECT_TRUE(becomes("HDMI-A-1", 100));
  EXPECT_TRUE(hud());
  EXPECT_FALSE(testClient.picture(box) == before);
  for (const auto key : {xKey::up, xKey::option, xKey::control}) world.screens.releaseKey(key);
}

// A busy machine may take so long between two presses that the level in between is said, too.
TEST_F(HUDOnDesktopTest, AScreenReaderSaysTheLevelThatARunOfPressesEndsAtOnce) {
  ScreenReader reader(environment());
  start();
  ASSERT_TRUE(doHotkeysWork());
  for (int times = 0; times < 4; ++times) tapHotkey(xKey::up);
  const auto last = "Left 20, " + std::to_string(leftLevelAtRest()) + "%";
  ASSERT_TRUE(eventually([&] { return !reader.heard().empty() && reader.heard().back() == last; }));
  ASSERT_TRUE(eventually([&] { return !hud(); }));
  const auto heard = atRest([&] { return reader.heard(); });
  EXPECT_EQ(std::ranges::count(heard, last), 1) << testing::PrintToString(heard);
  EXPECT_EQ(heard.back(), last) << testing::PrintToString(heard);
}

// Under a window manager

class HUDUnderManagerTest : public HUDOnDesktopTest {
 protected:
  HUDUnderManagerTest() {
    EXPECT_TRUE(eventually([&] { return testClient.hasRootProperty("_NET_CLIENT_LIST"); }))
        << "package openbox";
  }

  /// A window in front, with the pointer where the HUD will be.
  xcb_window_t openBelow(bool isFullScreen) {
    const xcb_window_t window = testClient.open("Work", {0, 0, 1500, 850}, ground, isFullScreen);
    EXPECT_TRUE(eventually([&] {
      // A window manager that is still starting may ignore the first request.
      testClient.show(window);
      return testClient.pixel(800, 740) == ground && testClient.focus() == window;
    }));
    world.screens.movePointer(800, 740);
    return window;
  }

  const std::filesystem::path noKeys = world.home.path / "openbox.xml";
  const bool isWritten =
      bool(std::ofstream(noKeys)
           << "<openbox_config><focus><focusNew>yes</focusNew></focus></openbox_config>");
  DesktopProcess manager{{"openbox", "--sm-disable", "--config-file", noKeys}, environment()};
};

class HUDOverAWindowTest : public HUDUnderManagerTest, public testing::WithParamInterface<bool> {};

TEST_P(HUDOverAWindowTest, ItIsInFrontTakesNoFocusAndAClickReachesTheWindowBelow) {
  const xcb_window_t below = openBelow(GetParam());
  start();
  ASSERT_TRUE(doesHUDShow());
  EXPECT_TRUE(isHUDAt({620, 716, 360, 54})) << text(lastSeen);
  EXPECT_TRUE(eventually([&] {
    keepShowing();
    return testClient.pixel(640, 743) != ground;
  })) << "it is in front";
  EXPECT_EQ(testClient.focus(), below);
  testClient.takeClicks();
  click(800, 743);
  EXPECT_TRUE(eventually([&] { return testClient.takeClicks() == 1; }));
  EXPECT_EQ(testClient.focus(), below);
  ASSERT_TRUE(eventually([&] { return !hud(); }));
  EXPECT_EQ(testClient.focus(), below);
  EXPECT_TRUE(eventually([&] { return testClient.pixel(800, 743) == ground; }));
}

INSTANTIATE_TEST_SUITE_P(Each, HUDOverAWindowTest, testing::Bool(),
                         [](const auto& one) { return one.param ? "FullScreen" : "Ordinary"; });

// At other scales

class HUDAtScaleTest : public HUDOnDesktopTest, public testing::WithParamInterface<double> {};

TEST_P(HUDAtScaleTest, ItHasThatManyMorePixelsInTheSamePlaceAndIsSharp) {
  const double scale = GetParam();
  testClient.cover(ground);
  start({{"QT_SCALE_FACTOR", std::to_string(scale)}});
  ASSERT_TRUE(doesHUDShow());
  const int tolerance = scale == 1 ? 0 : 1;
  ASSERT_TRUE(isHUDAt(boxOnLeft(scale), tolerance)) << text(lastSeen);
  const PixelBox box = lastSeen->box;
  // In an enlarged small picture every second pixel would equal its neighbour.
  EXPECT_TRUE(eventually([&] {
    keepShowing();
    const Picture shown = testClient.picture(box);
    int fine = 0;
    for (int y = 0; y + 1 < shown.height; y += 2) {
      for (int x = 0; x + 1 < shown.width; x += 2) {
        fine +=
            shown.at(x, y) != shown.at(x + 1, y) || shown.at(x, y) != shown.at(x, y + 1) ? 1 : 0;
      }
    }
    return fine > 150;
  }));
  // The HUD reaches to its outermost pixels.
  const int middle = box.x + box.width / 2;
  EXPECT_TRUE(eventually([&] {
    keepShowing();
    return testClient.pixel(middle, box.y) != ground &&
           testClient.pixel(middle, box.y + box.height - 1) != ground;
  }));
  EXPECT_EQ(testClient.pixel(middle, box.y - 1), ground);
  EXPECT_EQ(testClient.pixel(middle, box.y + box.height), ground);
  EXPECT_EQ(testClient.pixel(box.x + 1, box.y + 1), ground) << "the corners are cut off";
  pointAtMiddle();
  EXPECT_TRUE(
      isHUDAt({2560 - box.width / 2, 1380 - 130 - box.height, box.width, box.height}, tolerance))
      << text(lastSeen);
}

INSTANTIATE_TEST_SUITE_P(Each, HUDAtScaleTest, testing::Values(1.0, 1.5, 2.0), [](const auto& one) {
  return "Percent" + std::to_string(static_cast<int>(one.param * 100));
});

}  // namespace
}  // namespace brivane
