// The HUD's window on a real X server with three displays, seen from another client.
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QProcess>
#include <QWidget>
#include <cstdlib>
#include <functional>
#include <memory>

#include "Machines/Qt/Frame/HUDWindow.h"
#include "Machines/Qt/Toolkit/XClient.h"
#include "Tests/Machines/QtOnX/OnXWorld.h"
#include "Tests/Support/XTestClient.h"

namespace brivane {
namespace {

constexpr std::uint32_t ground = 0x3060a0;

class HUDOnXTest : public testing::Test {
 protected:
  HUDOnXTest() {
    window.installContentView(
        {FilledRectangle{{{0, 0, 360, 54}, 24}, Paint{Color{1, 0.25, 0, 1}}}});
  }

  bool eventually(const std::function<bool()>& holds) { return here.eventually(holds); }

  /// Over the lower middle of the display.
  void presentOn(std::size_t monitor) {
    Rect frame;
    for (const Screen& screen : here.linux->displays().screens()) {
      // The monitors of the rig are of different widths.
      if (screen.frame.width == X11Rig::standardDesk()[monitor].width) frame = screen.frame;
    }
    window.setFrame({frame.x + frame.width / 2 - 180, frame.y + 130, 360, 54});
    window.orderFrontRegardless();
  }
  xcb_window_t number() { return static_cast<xcb_window_t>(window.widget().winId()); }

  OnXWorld& here = OnXWorld::shared();
  XTestClient testClient{here.rig.display()};
  const xcb_window_t below = testClient.cover(ground);
  QtHUDWindow window{{.contentRect = {0, 0, 360, 54}, .level = statusWindowLevel},
                     here.desk->runtime(),
                     here.linux->displays(),
                     here.frame->application()};
};

TEST_F(HUDOnXTest, OnEachDisplayItIsInTheMiddleAbove130PixelsOfTheLowerEdge) {
  const auto monitors = X11Rig::standardDesk();
  for (std::size_t screen = 0; screen < monitors.size(); ++screen) {
    const RigMonitor& monitor = monitors[screen];
    const int left = monitor.x + monitor.width / 2 - 180;
    const int bottom = monitor.y + monitor.height - 130;
    presentOn(screen);
    EXPECT_TRUE(eventually([&] {
      return testClient.pixel(left + 180, bottom - 1) == 0xff4000 &&
             testClient.pixel(left + 180, bottom) == ground &&
             testClient.pixel(left + 180, bottom - 54) == 0xff4000 &&
             testClient.pixel(left + 180, bottom - 55) == ground &&
             testClient.pixel(left + 2, bottom - 27) == 0xff4000 &&
             testClient.pixel(left - 1, bottom - 27) == ground &&
             testClient.pixel(left + 357, bottom - 27) == 0xff4000 &&
             testClient.pixel(left + 360, bottom - 27) == ground;
    })) << "screen "
        << screen;
  }
}

TEST_F(HUDOnXTest, WithoutACompositorItsCornersShowWhatLiesBelow) {
  const RigMonitor monitor = X11Rig::standardDesk()[0];
  const int left = monitor.x + monitor.width / 2 - 180;
  const int top = monitor.y + monitor.height - 130 - 54;
  presentOn(0);
  EXPECT_TRUE(eventually([&] {
    return testClient.pixel(left + 180, top + 20) == 0xff4000 &&
           testClient.pixel(left + 1, top + 1) == ground &&
           testClient.pixel(left + 358, top + 52) == ground;
  }));
}

TEST_F(HUDOnXTest, AClickOnItReachesTheWindowBelow) {
  const RigMonitor monitor = X11Rig::standardDesk()[1];
  const int x = monitor.x + monitor.width / 2;
  const int y = monitor.y + monitor.height - 150;
  here.rig.warpPointer(x, y);
  presentOn(1);
  EXPECT_TRUE(eventually([&] { return testClient.pixel(x, y) == 0xff4000; }));
  EXPECT_TRUE(eventually(
      [&] { return testClient.topmost() == number() && testClient.underPointer() == below; }));
}

TEST_F(HUDOnXTest, ItNeverTakesTheKeyboard) {
  const xcb_window_t before = testClient.focus();
  presentOn(1);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
  EXPECT_EQ(testClient.focus(), before);
}

TEST_F(HUDOnXTest, EachPresentPutsItAboveWhatHasCoveredItMeanwhile) {
  presentOn(0);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
  const xcb_window_t player = testClient.cover(0);
  EXPECT_EQ(testClient.topmost(), player);
  presentOn(0);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
}

TEST_F(HUDOnXTest, ItHasAnAlphaChannelForTheCompositor) {
  presentOn(0);
  EXPECT_EQ(testClient.depth(number()), 32);
}

TEST_F(HUDOnXTest, WithoutACompositorAnAlphaOfZeroShowsNothing) {
  presentOn(0);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
  window.animateAlpha(0, 0.05, AnimationTiming::easeIn, {});
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == below; }));
  EXPECT_TRUE(window.isVisible()) << "it is ordered in";
  window.setAlpha(1);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
}

TEST_F(HUDOnXTest, OrderedOutItIsGone) {
  presentOn(0);
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == number(); }));
  window.orderOut();
  EXPECT_TRUE(eventually([&] { return testClient.topmost() == below; }));
}

/// With a compositor.
class HUDOnCompositedXTest : public HUDOnXTest {
 public:
  HUDOnCompositedXTest() {
    compositor.start("xcompmgr", {"-n"});
    EXPECT_TRUE(compositor.waitForStarted()) << "package xcompmgr";
    EXPECT_TRUE(eventually([] { return hasSelectionOwner("_NET_WM_CM_S0"); }));
  }
  ~HUDOnCompositedXTest() override {
    compositor.terminate();
    compositor.waitForFinished();
  }

  QProcess compositor;
};

TEST_F(HUDOnCompositedXTest, WhatLiesBelowShinesThroughAndAFadeGoesAllTheWay) {
  const RigMonitor monitor = X11Rig::standardDesk()[0];
  const int left = monitor.x + monitor.width / 2 - 180;
  const int top = monitor.y + monitor.height - 130 - 54;
  const auto red = [&] { return testClient.pixel(left + 180, top + 27) >> 16; };
  presentOn(0);
  EXPECT_TRUE(eventually([&] { return red() == 0xff; }));
  // The compositor may get the window before it paints what lies below.
  EXPECT_TRUE(eventually([&] { return testClient.pixel(left + 1, top + 1) == ground; }));
  window.setAlpha(0.5);
  EXPECT_TRUE(eventually([&] { return red() > 0x90 && red() < 0xa0; }));
  bool isOver = false;
  window.animateAlpha(0, 0.1, AnimationTiming::easeIn, [&] { isOver = true; });
  EXPECT_TRUE(eventually([&] { return isOver; }));
  EXPECT_TRUE(eventually([&] { return testClient.pixel(left + 180, top + 27) == ground; }));
}

}  // namespace
}  // namespace brivane
