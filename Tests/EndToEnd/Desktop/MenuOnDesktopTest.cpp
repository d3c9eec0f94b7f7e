// Every item of the menu, by a real pointer and a real keyboard.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/ScreenReader.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::Ge;
using testing::Le;

constexpr auto onlyHardware = R"({"SubZeroDimming": false, "BrightenPastMaximum": false})";

class MenuOnDesktopTest : public DesktopTest {
 protected:
  // The sliders, from top to bottom.
  static constexpr std::size_t middleSlider = 0;
  static constexpr std::size_t leftSlider = 1;
  // The rig's monitors.
  static constexpr std::size_t left = standardMonitor::left;
  static constexpr std::size_t middle = standardMonitor::middle;
  static constexpr std::size_t right = standardMonitor::right;

  void open() {
    ASSERT_TRUE(eventually([&] { return !host.items().empty(); }));
    host.click(host.items().back());
    ASSERT_TRUE(doesMenuOpen());
  }
  void openAndChoose(int lineFromLast) {
    open();
    choose(lineFromLast);
  }

  int handleX(std::size_t slider) {
    const auto found = handles();
    return slider < found.size() ? found[slider].x + found[slider].width / 2 : -1;
  }
  /// Waits until the handle has stopped moving.
  int handleXAtRest(std::size_t slider) {
    return atRest([&] { return handleX(slider); });
  }

  /// Drags the slider's handle, with a pause for `halfway`.
  void drag(std::size_t slider, int toX, const std::function<void()>& halfway = {}) {
    const auto found = handles();
    ASSERT_LT(slider, found.size());
    const PixelBox from = found[slider];
    const int x = from.x + from.width / 2;
    const int y = from.y + from.height / 2;
    world.screens.movePointer(x, y);
    world.screens.pressButton();
    constexpr int steps = 60;
    for (int step = 1; step <= steps; ++step) {
      world.screens.movePointer(x + (toX - x) * step / steps, y);
      std::this_thread::sleep_for(milliseconds(8));
      if (halfway && step == steps / 2) halfway();
    }
    world.screens.releaseButton();
  }

  bool wasOnTheWire(const std::string& event) {
    return std::ranges::any_of(wireLines(),
                               [&](const std::string& line) { return line.ends_with(event); });
  }

  std::uint16_t peak(std::size_t monitor) { return world.screens.gamma(monitor)[0].back(); }
  /// A middle entry of the gamma table, which may be brightened.
  std::uint16_t grey(std::size_t monitor) { return world.screens.gamma(monitor)[0][100]; }

  /// Chooses the item; returns how its tick looked before.
  auto switchLaunchAtLogin() {
    open();
    const auto line = menuLine(menuLineFromLast::launchAtLogin);
    if (!line) throw std::runtime_error("nothing lights up");
    auto picture = testClient.picture({line->x + 4, line->y, 20, line->height});
    click(*line);
    EXPECT_TRUE(doesMenuClose());
    return picture;
  }
  /// Waits: a menu closes before its command is carried out.
  bool doesEntrySay(const std::string& text) {
    return eventually(
        [&] { return TemporaryFolder::read(autostartEntry).find(text) != std::string::npos; });
  }

  const std::filesystem::path autostartEntry =
      world.home / ".config/autostart/com.quorrel.brivane.desktop";
  FakeTrayHost host{sessionBus.address()};
};

TEST_F(MenuOnDesktopTest, ADraggedSliderWritesAtMostEvery70MillisecondsAndTheLastExactly) {
  writeSettings(onlyHardware);
  start();
  open();
  const int half = handleX(leftSlider);
  drag(leftSlider, half + 200);
  ASSERT_TRUE(becomes("HDMI-A-1", 100)) << world.luminance("HDMI-A-1");
  ASSERT_TRUE(eventually([&] { return handleX(leftSlider) > half + 50; }));
  const int full = handleXAtRest(leftSlider);
  const int target = full - (full - half) * 63 / 50;
  const auto earlier = static_cast<std::ptrdiff_t>(writes("HDMI-A-1").size());
  const auto begin = std::chrono::steady_clock::now();
  drag(leftSlider, target, [&] {
    EXPECT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") < 90; })) << "it follows";
  });
  EXPECT_TRUE(eventually([&] {
    const auto level = world.luminance("HDMI-A-1");
    return level >= 36 && level <= 38 &&
           settings().find("\"brightness.2646.4097.11\": " + std::to_string(level)) !=
               std::string::npos;
  })) << world.luminance("HDMI-A-1")
      << settings();
  EXPECT_THAT(handleXAtRest(leftSlider), AllOf(Ge(target - 2), Le(target + 2)));
  auto all = writes("HDMI-A-1");
  all.erase(all.begin(), all.begin() + earlier);
  EXPECT_EQ(all.back().level, world.luminance("HDMI-A-1"));
  // Each level goes out twice in a row.
  const auto isSame = [](const Write& one, const Write& next) { return one.level == next.level; };
  all.erase(std::ranges::unique(all, isSame).begin(), all.end());
  // However late each write is, there are no more than one per 70 ms.
  const auto duration = all.back().time - begin.time_since_epoch();
  EXPECT_LE(all.size(), duration / milliseconds(70) + 2);
  EXPECT_EQ(world.luminance("DP-1"), 255);
}

TEST_F(MenuOnDesktopTest, AClickBesideTheHandleMovesItThere) {
  writeSettings(onlyHardware);
  start();
  open();
  const auto handle = handles().at(leftSlider);
  click(handle.x + 50, handle.y + handle.height / 2);
  EXPECT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") >= 60; }));
  EXPECT_LE(world.luminance("HDMI-A-1"), 80);
  EXPECT_TRUE(menu());
}

TEST_F(MenuOnDesktopTest, AClickThatJustMissesTheSliderLeavesTheMenuOpen) {
  start();
  open();
  const SeenWindow window = *menu();
  const auto handle = handles().at(leftSlider);
  click(window.box.x + window.box.width - 5, handle.y + handle.height / 2);
  click(window.box.x + 5, handle.y + handle.height / 2);
  const int before = handleXAtRest(leftSlider);
  click(handle.x + 50, handle.y + handle.height / 2);
  EXPECT_TRUE(eventually([&] { return handleX(leftSlider) > before + 20; }));
}

TEST_F(MenuOnDesktopTest, AtTheEndsOfTheSliderThatDisplayIsDimmedAndBrightenedAndNoOther) {
  start();
  open();
  const auto before = peak(left);
  const auto greyBefore = grey(middle);
  const int leftX = handleX(leftSlider);
  drag(leftSlider, leftX - 300);
  drag(middleSlider, leftX + 400);
  EXPECT_TRUE(becomes("HDMI-A-1", 0));
  EXPECT_TRUE(eventually([&] { return peak(left) < before / 2; }));
  EXPECT_TRUE(eventually([&] { return grey(middle) > greyBefore; }));
  EXPECT_EQ(peak(middle), before);
  EXPECT_EQ(peak(right), before);
  EXPECT_EQ(world.luminance("DP-1"), 255);
  ASSERT_TRUE(menu());
  tap(xKey::escape);
  ASSERT_TRUE(doesMenuClose());

  host.click(host.items().back());
  ASSERT_TRUE(eventually([&] { return handles().size() == 1; })) << "the other one is at its end";
  const auto line = menuLine(menuLineFromLast::undimAll);
  ASSERT_TRUE(line);
  click(*line);
  EXPECT_TRUE(eventually([&] { return peak(left) == before && grey(middle) == greyBefore; }));
}

TEST_F(MenuOnDesktopTest, ALevelThatChangesAtTheMonitorMovesTheOpenMenusSlider) {
  start();
  open();
  const int before = handleX(leftSlider);
  world.turn("HDMI-A-1", "level", "90");
  EXPECT_TRUE(eventually([&] { return handleX(leftSlider) >= before + 20; }));
  EXPECT_TRUE(writes("HDMI-A-1").empty());
}

TEST_F(MenuOnDesktopTest, ByKeyboardASliderIsReachedAndMoved) {
  start();
  open();
  tap(xKey::down);
  tap(xKey::down);
  for (int times = 0; times < 3; ++times) tap(xKey::right);
  EXPECT_TRUE(becomes("HDMI-A-1", 53)) << world.luminance("HDMI-A-1");
  EXPECT_EQ(world.luminance("DP-1"), 255);
}

TEST_F(MenuOnDesktopTest, AssistiveTechnologyReadsAndMovesASlider) {
  ScreenReader reader(environment());
  start();
  open();
  std::optional<ScreenReader::Item> slider;
  ASSERT_TRUE(eventually([&] {
    slider = reader.find("slider", "Brightness of Left 20");
    return slider.has_value();
  }));
  EXPECT_EQ(reader.value(*slider), 50);
  EXPECT_EQ(reader.value(*slider, "MinimumValue"), -100);
  EXPECT_EQ(reader.value(*slider, "MaximumValue"), 200);
  reader.setValue(*slider, 63);
  EXPECT_TRUE(becomes("HDMI-A-1", 63)) << world.luminance("HDMI-A-1");
  EXPECT_TRUE(eventually([&] { return reader.find("menu item", "Left 20 — 63%").has_value(); }));
  EXPECT_EQ(world.luminance("DP-1"), 255);
  EXPECT_THAT(atRest([&] { return reader.heard(); }), testing::IsEmpty())
      << "the slider says its value itself";
}

TEST_F(MenuOnDesktopTest, HotkeysActWhileItIsOpenAndMoveItsSlider) {
  start();
  open();
  const int before = handleX(leftSlider);
  for (int times = 0; times < 4; ++times) tapHotkey(xKey::up);
  EXPECT_TRUE(becomes("HDMI-A-1", 70)) << world.luminance("HDMI-A-1");
  EXPECT_TRUE(eventually([&] { return handleX(leftSlider) >= before + 10; }));
  EXPECT_TRUE(menu());
}

// With Shift a sweep takes seconds, so even a late release comes before its end.
TEST_F(MenuOnDesktopTest, AHeldHotkeySweepsWhileItIsOpenUntilItsRelease) {
  start();
  open();
  for (const auto key : {xKey::shift, xKey::f19}) world.screens.pressKey(key);
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") > 51; }));
  for (const auto key : {xKey::f19, xKey::shift}) world.screens.releaseKey(key);
  EXPECT_LT(leftLevelAtRest(), 100);
  EXPECT_TRUE(menu());
}

TEST_F(MenuOnDesktopTest, AHotkeyThatIsHeldWhileItClosesSweepsUntilItsRelease) {
  start();
  open();
  for (const auto key : {xKey::shift, xKey::f19}) world.screens.pressKey(key);
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") > 51; }));
  click(1500, 100);
  ASSERT_TRUE(doesMenuClose());
  for (const auto key : {xKey::f19, xKey::shift}) world.screens.releaseKey(key);
  EXPECT_LT(leftLevelAtRest(), 100);
}

TEST_F(MenuOnDesktopTest, ADisplayThatGoesOffHasNoSliderUntilItIsBack) {
  start();
  open();
  ASSERT_EQ(handles().size(), 2u);
  world.screens.turnOff(middle);
  EXPECT_TRUE(eventually([&] { return handles().size() == 1; }));
  world.screens.turnOn(middle);
  EXPECT_TRUE(eventually([&] { return handles().size() == 2; }));
  EXPECT_TRUE(menu());
}

TEST_F(MenuOnDesktopTest, TheKeyQQuits) {
  start();
  open();
  tap(xKey::q);
  expectCleanEnd();
}

TEST_F(MenuOnDesktopTest, AClickBesideTheMenuClosesIt) {
  start();
  open();
  click(100, 100);
  EXPECT_TRUE(doesMenuClose());
}

TEST_F(MenuOnDesktopTest, LaunchAtLoginSwitchesTheAutostartEntryAndTicksItsLine) {
  std::filesystem::create_directories(autostartEntry.parent_path());
  std::ofstream(autostartEntry)
      << "[Desktop Entry]\nType=Application\nName=Brivane\nExec=Brivane\n";
  start();
  const auto ticked = switchLaunchAtLogin();
  EXPECT_TRUE(doesEntrySay("\nHidden=true\n"));
  EXPECT_FALSE(switchLaunchAtLogin() == ticked);
  EXPECT_TRUE(doesEntrySay("\nHidden=false\n"));
  EXPECT_TRUE(switchLaunchAtLogin() == ticked);
}

TEST_F(MenuOnDesktopTest, TheAutostartEntryOfThePackageIsOffUntilTheMenuSwitchesIt) {
  const auto shared = world.home / "shared/autostart";
  std::filesystem::create_directories(shared);
  std::filesystem::copy("Packaging/Linux/autostart/com.quorrel.brivane.desktop", shared);
  start({{"XDG_CONFIG_DIRS", shared.parent_path()}});
  const auto off = switchLaunchAtLogin();
  EXPECT_TRUE(doesEntrySay("\nHidden=false\n"));
  EXPECT_TRUE(doesEntrySay("\nExec=Brivane\n"));
  EXPECT_FALSE(switchLaunchAtLogin() == off);
  EXPECT_TRUE(doesEntrySay("\nHidden=true\n"));
  EXPECT_TRUE(switchLaunchAtLogin() == off);
}

TEST_F(MenuOnDesktopTest, TheKeyboardsBrightnessKeysAreGivenBackAndTakenAgain) {
  start();
  EXPECT_TRUE(eventually([&] { return wasOnTheWire("remap 70 00 0c 00 224 -> 194"); }));
  openAndChoose(menuLineFromLast::systemKeys);
  EXPECT_TRUE(eventually([&] { return !world.screens.isKeyTaken(xKey::f19, 0); }));
  EXPECT_TRUE(eventually([&] { return wasOnTheWire("remap 70 00 0c 00 194 -> 224"); }));
  EXPECT_TRUE(eventually([&] {
    return settings().find("\"SystemBrightnessKeysEnabled\": false") != std::string::npos;
  }));
  openAndChoose(menuLineFromLast::systemKeys);
  EXPECT_TRUE(eventually([&] { return world.screens.isKeyTaken(xKey::f19, 0); }));
}

TEST_F(MenuOnDesktopTest, RestoreSavedBrightnessBringsBackWhatWasSetLast) {
  writeSettings(R"({"brightness.2646.4097.11": 45})");
  start();
  world.turn("HDMI-A-1", "level", "90");
  openAndChoose(menuLineFromLast::restoreSaved);
  EXPECT_TRUE(becomes("HDMI-A-1", 45)) << world.luminance("HDMI-A-1");
}

TEST_F(MenuOnDesktopTest, RetryAsksTheDisplaysThatDidNotAnswerAtOnce) {
  world.turn("HDMI-A-1", "mood", "wire:ENXIO");
  start();
  const auto attempts = [&] {
    return std::ranges::count_if(wireLines(), [](const std::string& line) {
      return line.find("HDMI-A-1 error") != std::string::npos;
    });
  };
  // The pauses between the program's own attempts become longer.
  ASSERT_TRUE(eventually([&] { return attempts() >= 6; }));
  host.click(host.items().back());
  ASSERT_TRUE(eventually([&] { return handles().size() == 1; }));
  world.turn("HDMI-A-1", "mood", "");
  choose(menuLineFromLast::retryDisconnected);
  open();
}

}  // namespace
}  // namespace brivane
