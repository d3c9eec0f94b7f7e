// The built resident program on a real X server with real key events, a bus that speaks DDC/CI and
// a logind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>

#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/ICCProfileBuilder.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

constexpr std::size_t left = 0;
constexpr std::size_t middle = 1;
constexpr std::size_t right = 2;

// X's key codes are evdev's plus 8.
constexpr xcb_keycode_t control = 37;
constexpr xcb_keycode_t option = 64;
constexpr xcb_keycode_t shift = 50;
constexpr xcb_keycode_t up = 111;
constexpr xcb_keycode_t down = 116;
constexpr xcb_keycode_t f19 = 197;
constexpr xcb_keycode_t brightnessUp = 233;

/// Waits until it holds, for at most some seconds.
bool eventually(const std::function<bool()>& condition) {
  for (int round = 0; round < 500; ++round) {
    if (condition()) return true;
    std::this_thread::sleep_for(milliseconds(10));
  }
  return false;
}

class LinuxResidentTest : public testing::Test {
 protected:
  LinuxResidentTest() {
    world.screens.useEvdevKeymap();
    pointAtLeft();
  }

  ~LinuxResidentTest() override {
    if (!program) return;
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait().exitStatus, 0);
  }

  /// Its hotkeys in force and every monitor's level known.
  void start() {
    auto environment = world.environment();
    environment["DBUS_SYSTEM_BUS_ADDRESS"] = logind.address();
    program = std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment);
    ASSERT_TRUE(eventually([&] { return world.screens.isKeyTaken(f19, 0); }));
    std::this_thread::sleep_for(milliseconds(500));
  }

  ProgramResult end(int signal) {
    program->signal(signal);
    auto result = program->wait();
    program.reset();
    return result;
  }

  void pointAtLeft() { world.screens.warpPointer(800, 450); }
  void pointAtMiddle() { world.screens.warpPointer(2500, 800); }
  void pointAtRight() { world.screens.warpPointer(4000, 1000); }

  void press(xcb_keycode_t key) {
    for (const auto modifier : {control, option}) world.screens.pressKey(modifier);
    world.screens.pressKey(key);
  }
  void release(xcb_keycode_t key) {
    world.screens.releaseKey(key);
    for (const auto modifier : {option, control}) world.screens.releaseKey(modifier);
  }
  void tap(xcb_keycode_t key, int times = 1) {
    for (int time = 0; time < times; ++time) {
      press(key);
      release(key);
      std::this_thread::sleep_for(milliseconds(20));
    }
  }

  bool becomes(const std::string& connector, std::uint16_t level) {
    return eventually([&] { return world.luminance(connector) == level; });
  }

  std::uint16_t peak(std::size_t monitor) { return world.screens.gamma(monitor)[0].back(); }

  LinuxWorld world;
  FakeLogind logind;
  std::unique_ptr<RunningProgram> program;
};

TEST_F(LinuxResidentTest, ControlOptionUpAndDownStepTheMonitorUnderThePointerAndNoOther) {
  start();
  tap(up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  tap(down, 2);
  EXPECT_TRUE(becomes("HDMI-A-1", 45)) << world.luminance("HDMI-A-1");
  EXPECT_EQ(world.luminance("DP-1"), 255);
  pointAtMiddle();
  tap(down);
  EXPECT_TRUE(becomes("DP-1", 242)) << world.luminance("DP-1");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 45);
}

TEST_F(LinuxResidentTest, AHeldKeyRampsAtItsPaceUntilItsRelease) {
  start();
  tap(down, 8);
  ASSERT_TRUE(becomes("HDMI-A-1", 10)) << world.luminance("HDMI-A-1");
  // One step at once, and after 0.35 s so many points a second.
  press(up);
  std::this_thread::sleep_for(milliseconds(1350));
  release(up);
  std::this_thread::sleep_for(milliseconds(200));
  const auto level = world.luminance("HDMI-A-1");
  EXPECT_THAT(level, AllOf(Ge(15 + rampPoints - 4), Le(15 + rampPoints + 4)));
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_EQ(world.luminance("HDMI-A-1"), level) << "the release ended it";
}

TEST_F(LinuxResidentTest, RollingFromOneKeyToTheOtherEndsWithTheRelease) {
  start();
  press(up);
  world.screens.pressKey(down);
  world.screens.releaseKey(up);
  release(down);
  std::this_thread::sleep_for(milliseconds(800));
  EXPECT_EQ(world.luminance("HDMI-A-1"), 50);
}

TEST_F(LinuxResidentTest, AtTheLowerEndTheDisplaysGammaIsDimmedAndNoOther) {
  const auto others = {world.screens.gamma(middle), world.screens.gamma(right)};
  start();
  const auto before = peak(left);
  tap(down, 14);
  ASSERT_TRUE(becomes("HDMI-A-1", 0));
  EXPECT_TRUE(eventually([&] { return peak(left) < before; }));
  tap(up, 6);
  EXPECT_TRUE(becomes("HDMI-A-1", 10)) << world.luminance("HDMI-A-1");
  EXPECT_EQ(peak(left), before);
}

}  // namespace
}  // namespace brivane
