// The built resident program on a real X server with real key events, a bus that speaks DDC/CI and
// a logind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "Machines/Linux/HIDUtil/InputDevices.h"
#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/ICCProfileBuilder.h"
#include "Tests/Support/MockedDevices.h"
#include "Tests/Support/XKeys.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::AnyOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using standardMonitor::left;
using standardMonitor::middle;
using standardMonitor::right;

using xKey::brightnessUp;
using xKey::control;
using xKey::down;
using xKey::f19;
using xKey::option;
using xKey::shift;
using xKey::up;

class LinuxResidentTest : public testing::Test {
 protected:
  LinuxResidentTest() {
    world.screens.useEvdevKeymap();
    pointAtLeft();
  }

  void TearDown() override {
    if (!program) return;
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait().exitStatus, 0);
  }

  std::map<std::string, std::string> environment() const {
    auto environment = world.environment();
    environment["DBUS_SYSTEM_BUS_ADDRESS"] = busAddress;
    environment["QT_QPA_PLATFORM"] = qtPlatform;
    return environment;
  }

  /// Returns once the hotkeys are in force and every monitor's level is known.
  void start() {
    launch();
    waitForLevels();
  }

  /// Returns once the hotkeys are in force.
  void launch() {
    program =
        std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
    ASSERT_TRUE(eventually([&] { return world.screens.isKeyTaken(f19, 0); }));
  }

  void waitForLevels() {
    // The program stores a monitor's maximum once it knows the level.
    for (const auto* monitor : {"ddcmax.2646.4097.11", "ddcmax.2646.4098.22"}) {
      ASSERT_TRUE(eventually([&] {
        return TemporaryFolder::read(world.settings()).find(monitor) != std::string::npos;
      }));
    }
  }

  /// Levels are read and restored two seconds after a change of the screens.
  void waitForRestoredLevels(const std::vector<std::string>& connectors) {
    std::this_thread::sleep_for(milliseconds(1900));
    const std::size_t before = world.wireLog().size();
    for (const auto& connector : connectors) {
      ASSERT_TRUE(eventually([&] { return wasOnTheWire(before, connector, "read "); }));
    }
    // The program may still be handling the last reply.
    atRest([&] { return world.wireLog(); });
  }

  /// Whether the log since that line has such an event.
  bool wasOnTheWire(std::size_t line, const std::string& connector, const std::string& event) {
    const auto lines = world.wireLog();
    return std::any_of(lines.begin() + static_cast<std::ptrdiff_t>(line), lines.end(),
                       [&](const std::string& message) {
                         return (message + "\n").find(" " + connector + " " + event) !=
                                std::string::npos;
                       });
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
    for (int time = 0; time < times; ++time) world.screens.tapKey(key, {control, option});
  }

  bool becomes(const std::string& connector, std::uint16_t level) {
    return eventually([&] { return world.luminance(connector) == level; });
  }
  std::uint16_t levelAtRest() {
    return atRest([&] { return world.luminance("HDMI-A-1"); });
  }

  /// When each level was first sent to the monitor, without the first messages of the log.
  std::map<int, std::chrono::microseconds> firstTimes(std::size_t skipped,
                                                      const std::string& connector) {
    std::map<int, std::chrono::microseconds> times;
    const auto lines = world.wireLog();
    for (std::size_t index = skipped; index < lines.size(); ++index) {
      std::istringstream line(lines[index]);
      std::int64_t time = 0;
      std::string device;
      std::string event;
      int level = 0;
      line >> time >> device >> event >> level;
      if (device == connector && event == "level") {
        times.emplace(level, std::chrono::microseconds(time));
      }
    }
    return times;
  }

  /// The most milliseconds per point between any two messages of a sweep that are `apart` points
  /// apart within the range. On a busy machine some messages are late.
  static double slowestPace(const std::map<int, std::chrono::microseconds>& times, int from, int to,
                            int apart) {
    double slowest = 0;
    for (const auto& [early, begin] : times) {
      for (const auto& [late, end] : times) {
        if (early < from || late > to || late - early < apart) continue;
        const double duration = std::chrono::duration<double, std::milli>(end - begin).count();
        slowest = std::max(slowest, duration / (late - early));
      }
    }
    return slowest;
  }

  /// A table that rises by `rise` per level.
  static X11Rig::Ramps line(std::size_t rise) {
    std::vector<std::uint16_t> levels;
    for (std::size_t level = 0; level < 256; ++level) {
      levels.push_back(static_cast<std::uint16_t>(level * rise));
    }
    return {levels, levels, levels};
  }

  /// The HUDs' places, "x,y" in X's pixels.
  std::vector<std::string> huds() {
    std::vector<std::string> places;
    for (const auto& box : world.screens.shownWindows()) {
      if (box.width != 360 || box.height != 54) continue;
      places.push_back(std::to_string(box.x) + "," + std::to_string(box.y));
    }
    return places;
  }
  bool showsHUDAt(int x, int y) {
    return huds() == std::vector{std::to_string(x) + "," + std::to_string(y)};
  }

  std::uint16_t peak(std::size_t monitor) { return world.screens.gamma(monitor)[0].back(); }

  LinuxWorld world;
  FakeLogind logind;
  std::string busAddress = logind.address();
  std::string qtPlatform;
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

TEST_F(LinuxResidentTest, AHeldKeySweepsUntilItsRelease) {
  start();
  tap(down, 10);
  ASSERT_TRUE(becomes("HDMI-A-1", 0)) << world.luminance("HDMI-A-1");
  press(up);
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") >= 10; }));
  release(up);
  EXPECT_LT(levelAtRest(), 100) << "the release ended it";
}

TEST_F(LinuxResidentTest, AHeldKeysMessagesGoOutInItsStepsAndNoFaster) {
  start();
  tap(down, 10);
  ASSERT_TRUE(becomes("HDMI-A-1", 0));
  std::this_thread::sleep_for(milliseconds(100));
  const std::size_t before = world.wireLog().size();
  press(up);
  ASSERT_TRUE(becomes("HDMI-A-1", 100));
  release(up);
  const auto times = firstTimes(before, "HDMI-A-1");
  ASSERT_TRUE(times.contains(5));
  const auto swept = times.upper_bound(5);
  ASSERT_NE(swept, times.end());
  EXPECT_GE(swept->second - times.at(5), milliseconds(200)) << "the press's own step comes first";
  // A hundred points take 1.2 s, and longer when the machine is slow.
  EXPECT_GE(slowestPace(times, 10, 90, 60), 11);
  for (const auto& [level, time] : times) EXPECT_EQ(level % 5, 0);
}

TEST_F(LinuxResidentTest, WithShiftARelayedKeySweepsFinely) {
  start();
  const std::size_t before = world.wireLog().size();
  world.screens.pressKey(shift);
  world.screens.pressKey(f19);
  EXPECT_TRUE(eventually([&] { return wasOnTheWire(before, "HDMI-A-1", "level 51\n"); }));
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") >= 65; }));
  // A hundred points take 6 s, and longer when the machine is slow; a message may be late by up to
  // a point.
  EXPECT_GE(slowestPace(firstTimes(before, "HDMI-A-1"), 52, 65, 9), 54);
  // Without Shift the held key sweeps faster.
  world.screens.releaseKey(shift);
  EXPECT_TRUE(becomes("HDMI-A-1", 100));
  world.screens.releaseKey(f19);
}

TEST_F(LinuxResidentTest, RollingFromOneKeyToTheOtherEndsWithTheLastRelease) {
  start();
  press(up);
  world.screens.pressKey(down);
  world.screens.releaseKey(up);
  release(down);
  EXPECT_EQ(levelAtRest(), 50);
}

TEST_F(LinuxResidentTest, CapsLockAndNumLockChangeNothing) {
  using xKey::capsLock;
  using xKey::numLock;
  start();
  std::uint16_t level = 50;
  for (const auto lock : {capsLock, numLock}) {
    world.screens.pressKey(lock);
    world.screens.releaseKey(lock);
    tap(up);
    level += 5;
    EXPECT_TRUE(becomes("HDMI-A-1", level)) << world.luminance("HDMI-A-1");
  }
}

TEST_F(LinuxResidentTest, BelowTheLowestLevelThatDisplaysGammaIsDimmedAndNoOther) {
  start();
  const auto before = world.screens.gamma(left);
  const auto others = std::array{world.screens.gamma(middle), world.screens.gamma(right)};
  tap(down, 14);
  ASSERT_TRUE(becomes("HDMI-A-1", 0));
  EXPECT_TRUE(eventually([&] { return peak(left) < before[0].back(); }));
  EXPECT_EQ(world.screens.gamma(middle), others[0]);
  EXPECT_EQ(world.screens.gamma(right), others[1]);
  tap(up, 6);
  EXPECT_TRUE(becomes("HDMI-A-1", 10)) << world.luminance("HDMI-A-1");
  EXPECT_TRUE(eventually([&] { return world.screens.gamma(left) == before; }));
}

TEST_F(LinuxResidentTest, AboveTheHighestLevelThatDisplaysGammaIsBrightenedAndNoOther) {
  start();
  pointAtMiddle();
  const auto before = world.screens.gamma(middle);
  const auto others = std::array{world.screens.gamma(left), world.screens.gamma(right)};
  constexpr std::size_t grey = 100;
  tap(up, 4);
  EXPECT_TRUE(eventually([&] { return world.screens.gamma(middle)[0][grey] > before[0][grey]; }));
  EXPECT_EQ(world.luminance("DP-1"), 255);
  EXPECT_EQ(world.screens.gamma(left), others[0]);
  EXPECT_EQ(world.screens.gamma(right), others[1]);
  tap(down, 5);
  EXPECT_TRUE(becomes("DP-1", 242));
  EXPECT_TRUE(eventually([&] { return world.screens.gamma(middle) == before; }));
}

// The end

class LinuxResidentEndTest : public LinuxResidentTest {
 protected:
  LinuxResidentEndTest() {
    world.screens.setOutputProfile(left, profile(250));
    world.screens.setOutputProfile(middle, profile(240));
    world.screens.setGamma(left, line(250));
    world.screens.setGamma(middle, line(240));
  }

  /// A profile whose calibration rises by `rise` per level.
  static std::vector<std::uint8_t> profile(std::uint32_t rise) {
    std::vector<std::uint32_t> entries;
    for (std::uint32_t channel = 0; channel < 3; ++channel) {
      for (std::uint32_t level = 0; level < 256; ++level) entries.push_back(level * rise);
    }
    return ICCProfileBuilder().tag("vcgt", ICCProfileBuilder::table(3, 256, 2, entries)).bytes();
  }

  bool isCalibrated() {
    return eventually([&] { return isCalibratedNow(); });
  }
  bool isCalibratedNow() {
    return world.screens.gamma(left) == line(250) && world.screens.gamma(middle) == line(240) &&
           world.screens.gamma(right) == line(257);
  }

  std::vector<std::uint16_t> peaks() { return {peak(left), peak(middle), peak(right)}; }

  /// One display dimmed, one brightened, one left alone.
  void disturb() {
    pointAtLeft();
    tap(down, 14);
    // A press acts where the pointer is when the program handles the press.
    ASSERT_TRUE(eventually([&] { return peak(left) < 55000; }));
    pointAtMiddle();
    tap(up, 3);
    ASSERT_TRUE(eventually([&] { return world.screens.gamma(middle) != line(240); }));
  }
};

TEST_F(LinuxResidentEndTest, AfterASignalEveryTableIsTheCalibratedOne) {
  start();
  EXPECT_TRUE(isCalibrated());
  disturb();
  EXPECT_EQ(end(SIGTERM).exitStatus, 0);
  EXPECT_TRUE(isCalibrated()) << testing::PrintToString(peaks());
}

TEST_F(LinuxResidentEndTest, AfterAKillTheNextStartMakesEveryTableTheCalibratedOne) {
  start();
  disturb();
  EXPECT_EQ(end(SIGKILL).exitStatus, 128 + SIGKILL);
  EXPECT_FALSE(isCalibratedNow()) << "gamma outlives the program on X";
  start();
  EXPECT_TRUE(isCalibrated()) << testing::PrintToString(peaks());
}

TEST_F(LinuxResidentEndTest, AfterASignalADisplayThatWentOffDimmedComesBackUndimmed) {
  start();
  disturb();
  for (const auto display : {left, middle}) world.screens.turnOff(display);
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_EQ(end(SIGTERM).exitStatus, 0);
  for (const auto display : {left, middle}) {
    world.screens.turnOn(display);
    EXPECT_TRUE(eventually([&] { return world.screens.gamma(display) == line(257); }));
  }
}

TEST_F(LinuxResidentTest, ASecondStartNamesTheFirstAndLeavesItAlone) {
  start();
  const ProgramResult second = runProgram("Brivane", {}, world.environment());
  EXPECT_EQ(second.exitStatus, 0);
  EXPECT_EQ(second.errors, "Brivane is already running (pid " +
                               std::to_string(program->processID()) + "); exiting.\n");
}

TEST_F(LinuxResidentTest, AReportBesideItEndsWithTheCommandThatEndsItOnLinux) {
  start();
  const ProgramResult report = runProgram("Brivane", {"--probe"}, world.environment());
  EXPECT_THAT(report.output, HasSubstr("launchctl bootout"));
  EXPECT_THAT(linesOf(report.errors),
              ElementsAre(EndsWith("On Linux: kill " + std::to_string(program->processID()))));
}

TEST_F(LinuxResidentTest, OfTwoThatStartAtTheSameMomentOneStaysAndTheOtherNamesIt) {
  for (int round = 0; round < 5; ++round) {
    std::array<std::unique_ptr<RunningProgram>, 2> both;
    for (auto& one : both) {
      one = std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
    }
    if (!eventually([&] { return both[0]->hasEnded() || both[1]->hasEnded(); })) {
      for (const auto& one : both) one->signal(SIGTERM);
      FAIL() << "both stay";
    }
    const bool firstStays = both[1]->hasEnded();
    const auto& stays = both.at(firstStays ? 0 : 1);
    const ProgramResult gone = both.at(firstStays ? 1 : 0)->wait();
    EXPECT_EQ(gone.exitStatus, 0);
    EXPECT_EQ(gone.errors, "Brivane is already running (pid " + std::to_string(stays->processID()) +
                               "); exiting.\n");
    EXPECT_TRUE(eventually([&] { return world.screens.isKeyTaken(f19, 0); }));
    EXPECT_FALSE(stays->hasEnded());
    stays->signal(SIGTERM);
    EXPECT_EQ(stays->wait().exitStatus, 0);
  }
}

TEST_F(LinuxResidentTest, WithoutASystemBusItSaysSoInOneLineAndEverythingButTheWakeWorks) {
  busAddress = "unix:path=/no/such/bus";
  start();
  tap(up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  EXPECT_EQ(
      end(SIGTERM).errors,
      "Brivane has no system bus: it hears of no sleep and no wake, and can't ask logind to set "
      "a built-in panel; everything else works.\n");
}

TEST_F(LinuxResidentTest, AfterAnotherKeyboardLayoutTheHotkeysWorkAndAHeldKeyStillEnds) {
  start();
  world.screens.useEvdevKeymap("fr");
  tap(up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  tap(down, 11);
  ASSERT_TRUE(becomes("HDMI-A-1", 0)) << world.luminance("HDMI-A-1");
  // With Shift the sweep lasts longer than the change of the layout.
  world.screens.pressKey(shift);
  world.screens.pressKey(f19);
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") > 1; }));
  world.screens.useEvdevKeymap("de");
  world.screens.releaseKey(f19);
  world.screens.releaseKey(shift);
  EXPECT_LT(levelAtRest(), 100);
}

TEST_F(LinuxResidentTest, WithoutAnXServerItSaysWhatIsMissingAndEndsWithStatusOne) {
  auto environment = world.environment();
  environment["DISPLAY"] = "";
  const ProgramResult result = runProgram("Brivane", {}, environment);
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(linesOf(result.errors), ElementsAre(StartsWith("Brivane sees no displays because ")));
}

class LinuxResidentServerDeathTest : public LinuxResidentTest {
 protected:
  std::string keyMapping() {
    return runProgram("brivane-hidutil", {"property", "--get", "UserKeyMapping"},
                      world.environment())
        .output;
  }

  void expectOneLineAndStatusOne() {
    const ProgramResult result = program->wait();
    program.reset();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "Brivane ends because the X server \"" + world.screens.display() + "\" has gone.\n");
  }
};

TEST_F(LinuxResidentServerDeathTest, TheProgramLogsItGivesTheBrightnessKeysBackAndEnds) {
  const std::string before = keyMapping();
  start();
  ASSERT_TRUE(eventually([&] { return keyMapping() != before; }));
  world.screens.killServer();
  expectOneLineAndStatusOne();
  EXPECT_EQ(keyMapping(), before);
}

TEST_F(LinuxResidentServerDeathTest, WithItsHUDOnTheScreenAndAKeyHeldItEndsInTheSameWay) {
  start();
  press(down);
  ASSERT_TRUE(becomes("HDMI-A-1", 0));
  world.screens.killServer();
  expectOneLineAndStatusOne();
}

TEST_F(LinuxResidentServerDeathTest, WithItsWindowsNotOnThatServerItEndsToo) {
  qtPlatform = "offscreen";
  start();
  world.screens.killServer();
  expectOneLineAndStatusOne();
}

TEST_F(LinuxResidentServerDeathTest, ASignalJustBeforeItStillGivesTheBrightnessKeysBack) {
  const std::string before = keyMapping();
  start();
  program->signal(SIGTERM);
  world.screens.killServer();
  const ProgramResult result = program->wait();
  program.reset();
  EXPECT_THAT(result.exitStatus, AnyOf(0, 1)) << "whichever came first";
  EXPECT_EQ(keyMapping(), before);
}

// The keyboard's own brightness keys

TEST_F(LinuxResidentTest, ABrightnessKeyStepsTheMonitorAndReachesNoOtherProgram) {
  start();
  world.screens.takeTypedKeys();
  world.screens.pressKey(brightnessUp);
  world.screens.releaseKey(brightnessUp);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  EXPECT_THAT(world.screens.takeTypedKeys(), IsEmpty());
}

TEST_F(LinuxResidentTest, OverADisplayThatCantBeDrivenABrightnessKeyReachesOtherPrograms) {
  start();
  pointAtRight();
  world.screens.takeTypedKeys();
  world.screens.pressKey(brightnessUp);
  std::vector<std::string> typed;
  EXPECT_TRUE(eventually([&] {
    for (auto& key : world.screens.takeTypedKeys()) typed.push_back(std::move(key));
    return !typed.empty();
  }));
  world.screens.releaseKey(brightnessUp);
  EXPECT_EQ(typed.front(), "+233");
}

// Devices that come later

TEST_F(LinuxResidentTest, MonitorsWhoseDeviceFilesAppearUnannouncedWhileItRunsAreDriven) {
  std::vector<std::unique_ptr<Vanished>> buses;
  for (const auto* bus : {"/dev/i2c-5", "/dev/i2c-6"}) {
    buses.push_back(std::make_unique<Vanished>(bus));
  }
  const std::size_t before = world.wireLog().size();
  launch();
  // Until the first attempts have failed.
  std::this_thread::sleep_for(milliseconds(1000));
  for (const auto* monitor : {"HDMI-A-1", "DP-1"}) {
    EXPECT_FALSE(wasOnTheWire(before, monitor, "write "));
  }
  buses.clear();
  waitForLevels();
  tap(up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
}

TEST_F(LinuxResidentTest, AKeyboardAttachedWhileItRunsGetsTheRelayLongBeforeTheNextCheck) {
  const Scancode scancode{"\x6f\x00\x0c\x00", 4};
  const auto isRelayed = [&] {
    return world.keymap("event3").find("6f 00 0c 00 189\n") != std::string::npos;
  };
  start();
  ASSERT_TRUE(eventually(isRelayed));
  const auto attached = std::chrono::steady_clock::now();
  const auto keyboard = DeviceKeymap::open("/dev/input/event3");
  ASSERT_EQ(std::get<DeviceKeymap>(keyboard).setKey(scancode, KEY_BRIGHTNESSUP), 0);
  ASSERT_FALSE(isRelayed());
  announceDevice("add", "input/event3");
  ASSERT_TRUE(eventually(isRelayed));
  EXPECT_LT(std::chrono::steady_clock::now() - attached, std::chrono::seconds(30));
}

// Sleep, wake and screens

TEST_F(LinuxResidentTest, WhileTheMachineSleepsNothingIsWrittenAndAfterwardsItIs) {
  start();
  ASSERT_TRUE(eventually([&] { return !logind.inhibitors().empty(); }));
  logind.announceSleep(true);
  ASSERT_TRUE(eventually([&] { return logind.inhibitors().empty(); }));
  tap(up);
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_EQ(world.luminance("HDMI-A-1"), 50);
  logind.announceSleep(false);
  world.turn("HDMI-A-1", "level", "20");
  std::this_thread::sleep_for(milliseconds(1000));
  const auto level = levelAtRest();
  // Presses before the program knows the level again do nothing.
  EXPECT_TRUE(eventually([&] {
    tap(up);
    std::this_thread::sleep_for(milliseconds(200));
    return world.luminance("HDMI-A-1") > level;
  }));
}

TEST_F(LinuxResidentTest, SleepWaitsForTheWireAndAHeldKeyWritesNothingDuringIt) {
  start();
  ASSERT_TRUE(eventually([&] { return !logind.inhibitors().empty(); }));
  EXPECT_THAT(logind.inhibitors(), ElementsAre("sleep delay Brivane"));
  press(down);
  ASSERT_TRUE(eventually([&] { return world.luminance("HDMI-A-1") < 40; }));
  logind.announceSleep(true);
  ASSERT_TRUE(eventually([&] { return logind.inhibitors().empty(); }));
  const auto messages = world.wireLog();
  std::this_thread::sleep_for(milliseconds(1000));
  EXPECT_EQ(world.wireLog(), messages);
  release(down);
  logind.announceSleep(false);
  EXPECT_TRUE(eventually([&] { return !logind.inhibitors().empty(); }));
  EXPECT_TRUE(eventually([&] { return world.wireLog().size() > messages.size(); }));
}

TEST_F(LinuxResidentTest, ADisplayThatIsMovedOrWasOffIsStillTheOneUnderThePointer) {
  start();
  world.screens.move(left, 0, 1000);
  world.screens.turnOff(middle);
  world.screens.warpPointer(800, 1450);
  waitForRestoredLevels({"HDMI-A-1"});
  tap(up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  world.screens.turnOn(middle);
  waitForRestoredLevels({"HDMI-A-1", "DP-1"});
  pointAtMiddle();
  tap(down);
  EXPECT_TRUE(becomes("DP-1", 242)) << world.luminance("DP-1");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 55);
}

TEST_F(LinuxResidentTest, TheHUDIsShownInTheMiddleOfTheDisplayAboveItsLowerEdge) {
  start();
  tap(up);
  EXPECT_TRUE(eventually([&] { return showsHUDAt(800 - 180, 900 - 130 - 54); }));
  pointAtMiddle();
  tap(up);
  EXPECT_TRUE(eventually([&] { return showsHUDAt(1600 + 960 - 180, 300 + 1080 - 130 - 54); }));
  EXPECT_TRUE(eventually([&] { return !showsHUDAt(1600 + 960 - 180, 300 + 1080 - 130 - 54); }))
      << "it goes by itself";
}

TEST_F(LinuxResidentTest, OnADisplayThatHasMovedTheHUDMovesWithIt) {
  start();
  tap(up);
  EXPECT_TRUE(eventually([&] { return showsHUDAt(800 - 180, 900 - 130 - 54); }));
  world.screens.move(left, 0, 1000);
  world.screens.warpPointer(800, 1450);
  waitForRestoredLevels({"HDMI-A-1"});
  tap(up);
  EXPECT_TRUE(eventually([&] { return showsHUDAt(800 - 180, 1000 + 900 - 130 - 54); }))
      << testing::PrintToString(huds());
}

TEST_F(LinuxResidentTest, ADisplayThatWasOffIsBroughtBackToItsLevelAndDimming) {
  start();
  pointAtMiddle();
  tap(down, 2);
  ASSERT_TRUE(becomes("DP-1", 230)) << world.luminance("DP-1");
  pointAtLeft();
  tap(down, 14);
  ASSERT_TRUE(becomes("HDMI-A-1", 0));
  ASSERT_TRUE(eventually([&] { return peak(left) < 55000; }));
  const auto dimmed = atRest([&] { return world.screens.gamma(left); });
  const std::size_t before = world.wireLog().size();
  for (const auto display : {left, middle}) world.screens.turnOff(display);
  std::this_thread::sleep_for(milliseconds(2500));
  // Power saving, or the monitor's buttons, have changed the levels.
  world.turn("DP-1", "level", "100");
  world.turn("HDMI-A-1", "level", "70");
  world.screens.setGamma(left, line(257));
  for (const auto display : {left, middle}) world.screens.turnOn(display);
  EXPECT_TRUE(becomes("DP-1", 230)) << world.luminance("DP-1");
  EXPECT_TRUE(becomes("HDMI-A-1", 0)) << world.luminance("HDMI-A-1");
  EXPECT_TRUE(eventually([&] { return world.screens.gamma(left) == dimmed; })) << peak(left);
  EXPECT_GT(world.wireLog().size(), before);
  atRest([&] { return world.wireLog(); });
  pointAtMiddle();
  tap(up);
  EXPECT_TRUE(becomes("DP-1", 242)) << world.luminance("DP-1");
}

}  // namespace
}  // namespace brivane
