// What other programs ask for, from the launched program's one end of it to the hardware and the
// screen.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "BrivaneApp/AppDelegate.h"
#include "Tests/Support/ResidentBench.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::Field;
using testing::HasSubstr;
using testing::VariantWith;
using Reason = RemoteFailure::Reason;

auto isLevel(Percent level) {
  return VariantWith<std::int64_t>(level);
}

auto fails(Reason reason, const std::string& words) {
  return VariantWith<RemoteFailure>(testing::AllOf(
      Field(&RemoteFailure::reason, reason), Field(&RemoteFailure::sentence, HasSubstr(words))));
}

struct RemoteControllerTest : testing::Test, ResidentBench {
  /// Launches the program, which then reads the monitors' levels.
  RemoteCommands& launched() {
    delegate = std::make_unique<AppDelegate>(machine, frame);
    delegate->applicationDidFinishLaunching();
    run(1s);
    return *machine.remoteCommands;
  }

  FakeBus::Channel& addMonitorNamed(const std::string& name, DisplayID display) {
    machine.gamma.add(display, 256);
    return machine.addMonitor(display, name, "disp" + std::to_string(display), 1, display, 1);
  }

  void addBuiltInPanel() {
    machine.displaySystem.add({.id = 1, .isBuiltIn = true}, "Panel");
    machine.gamma.add(1, 256);
    machine.pointAt(1);
    machine.displayServices.install(machine.loader);
    machine.displayServices.levels[1] = 0.5F;
    machine.displayServices.canChange[1] = true;
  }

  bool isHUDVisible() { return frame.hudWindow != nullptr && frame.hudWindow->isVisible(); }

  std::unique_ptr<AppDelegate> delegate;
};

TEST_F(RemoteControllerTest, UpAndDownAreHotkeyPressesSnappedToAStepOfFiveWithTheHUD) {
  auto& monitor = addMonitor();
  monitor.current = 37;
  auto& commands = launched();
  EXPECT_FALSE(isHUDVisible());
  EXPECT_THAT(commands.pressUp(), isLevel(40));
  EXPECT_TRUE(isHUDVisible());
  EXPECT_EQ(monitor.current, 40);
  EXPECT_THAT(commands.pressDown(), isLevel(35));
  EXPECT_EQ(monitor.current, 35);
}

TEST_F(RemoteControllerTest, PressesGoOnIntoDimmingAndBrightening) {
  auto& monitor = addMonitor();
  monitor.current = 0;
  auto& commands = launched();
  EXPECT_THAT(commands.pressDown(), isLevel(-5));
  EXPECT_THAT(commands.set(100, ""), isLevel(100));
  EXPECT_THAT(commands.pressUp(), isLevel(105));
}

TEST_F(RemoteControllerTest, SetTakesTheWholeJointScaleShowsNoHUDAndIsRememberedAsTheUsersLevel) {
  auto& monitor = addMonitor();
  auto& commands = launched();
  EXPECT_THAT(commands.set(30, ""), isLevel(30));
  EXPECT_EQ(monitor.current, 30);
  EXPECT_EQ(machine.settings.object("brightness.1.2.1"), PropertyValue(30));
  EXPECT_THAT(commands.set(-100, ""), isLevel(-100));
  EXPECT_EQ(monitor.current, 0);
  EXPECT_THAT(commands.set(200, ""), isLevel(200));
  EXPECT_EQ(monitor.current, 100);
  EXPECT_FALSE(isHUDVisible());
}

TEST_F(RemoteControllerTest,
       ALevelThatTheSettingsDontOfferBecomesTheNearestAndOneOffTheScaleFails) {
  auto& monitor = addMonitor();
  auto& commands = launched();
  machine.settings.set("SubZeroDimming", {false});
  EXPECT_THAT(commands.set(-50, ""), isLevel(0));
  EXPECT_THAT(commands.set(201, ""), fails(Reason::levelOutOfRange, "-100 to 200"));
  EXPECT_THAT(commands.set(-101, ""), fails(Reason::levelOutOfRange, "-100 to 200"));
  EXPECT_EQ(monitor.current, 0);
}

TEST_F(RemoteControllerTest, ADisplayIsTheOneUnderThePointerOrOneByItsNumberOrName) {
  addMonitorNamed("Halden H27", 2).current = 20;
  addMonitorNamed("Norvik 24", 3).current = 30;
  machine.pointAt(3);
  auto& commands = launched();
  EXPECT_THAT(commands.get(""), isLevel(30));
  EXPECT_THAT(commands.get("2"), isLevel(20));
  EXPECT_THAT(commands.get("Halden H27"), isLevel(20));
  EXPECT_THAT(commands.set(45, "Halden H27"), isLevel(45));
  EXPECT_THAT(commands.get("3"), isLevel(30));
}

TEST_F(RemoteControllerTest, AnUnknownOrAmbiguousDisplayFailsAndTheAnswerNamesThoseThereAre) {
  addMonitorNamed("Norvik 24", 2);
  addMonitorNamed("Norvik 24", 3);
  addMonitorNamed("Halden H27", 4);
  auto& commands = launched();
  EXPECT_THAT(commands.get("7"),
              fails(Reason::noSuchDisplay, "2 (Norvik 24), 3 (Norvik 24), 4 (Halden H27)"));
  EXPECT_THAT(commands.get("halden"), fails(Reason::noSuchDisplay, "\"halden\""));
  EXPECT_THAT(commands.set(50, "Norvik 24"),
              fails(Reason::ambiguousDisplay, "2 (Norvik 24), 3 (Norvik 24)."));
}

TEST_F(RemoteControllerTest, WithThePointerOnNoDisplayAPressFailsAndShowsNothing) {
  addMonitor();
  auto& commands = launched();
  machine.displaySystem.pointer = {-1, -1};
  EXPECT_THAT(commands.pressUp(), fails(Reason::noSuchDisplay, "pointer"));
  EXPECT_THAT(commands.get(""), fails(Reason::noSuchDisplay, "pointer"));
  EXPECT_FALSE(isHUDVisible());
}

TEST_F(RemoteControllerTest, AMonitorThatHasFallenSilentShowsTheConnectingHUDAndThePressFails) {
  auto& monitor = addMonitor();
  monitor.answers = false;
  machine.settings.set("ddc.1.2.1", {true});
  auto& commands = launched();
  EXPECT_THAT(commands.pressUp(), fails(Reason::notAnswering, "Monitor 2 doesn't answer; Brivane"));
  EXPECT_TRUE(isHUDVisible());
  EXPECT_THAT(commands.set(40, ""), fails(Reason::notAnswering, "Monitor 2 doesn't answer"));
}

TEST_F(RemoteControllerTest, APressThatWritesNothingIsDoneWithTheRememberedLevelOfASilentMonitor) {
  addMonitor().answers = false;
  machine.settings.set("brightness.1.2.1", {100});
  machine.settings.set("ddc.1.2.1", {true});
  machine.settings.set("ddcmax.1.2.1", {100});
  machine.settings.set("BrightenPastMaximum", {false});
  auto& commands = launched();
  EXPECT_THAT(commands.pressUp(), isLevel(100));
  EXPECT_TRUE(isHUDVisible());
}

TEST_F(RemoteControllerTest, ADisplayWithoutABusDoesntAnswerAndShowsNoHUD) {
  machine.displaySystem.add({.id = 2}, "Projector");
  machine.pointAt(2);
  auto& commands = launched();
  EXPECT_THAT(commands.pressUp(), fails(Reason::notAnswering, "Projector doesn't answer"));
  EXPECT_THAT(commands.set(40, ""), fails(Reason::notAnswering, "Projector doesn't answer"));
  EXPECT_FALSE(isHUDVisible());
}

TEST_F(RemoteControllerTest, AMonitorThatRefusesALevelSaysSoToAPressAndASet) {
  auto& monitor = addMonitor();
  auto& commands = launched();
  monitor.writeStatus = 1;
  EXPECT_THAT(commands.pressUp(), fails(Reason::notAnswering, "Monitor 2 didn't take the level"));
  EXPECT_THAT(commands.set(70, "2"), fails(Reason::notAnswering, "didn't take the level"));
}

TEST_F(RemoteControllerTest, TheBuiltInPanelsKeysStayTheSystemsButItsLevelCanBeSet) {
  addBuiltInPanel();
  toolWorks = false;
  auto& commands = launched();
  EXPECT_THAT(commands.pressUp(), fails(Reason::notDriven, "keys of Panel to the system"));
  EXPECT_THAT(commands.set(60, "Panel"), isLevel(60));
}

TEST_F(RemoteControllerTest, APanelThatTheSystemAloneControlsAndOneWithoutAReadingAreNotDriven) {
  addBuiltInPanel();
  machine.displayServices.canChange[1] = false;
  machine.displayServices.levels.clear();
  machine.displaySystem.add({.id = 2, .vendor = 1552}, "Studio");
  machine.displayServices.canChange[2] = true;
  auto& commands = launched();
  EXPECT_THAT(commands.set(60, "1"), fails(Reason::notDriven, "Panel is controlled by the system"));
  EXPECT_THAT(commands.pressUp(), fails(Reason::notDriven, "Panel is controlled by the system"));
  EXPECT_THAT(commands.get("2"), fails(Reason::notDriven, "Studio gives no level"));
}

TEST_F(RemoteControllerTest, TheListHasEachDisplaysLevelOrNoneItsRangeAndWhereThePointerIs) {
  addMonitorNamed("Norvik 24", 2).current = 30;
  addMonitorNamed("Halden H27", 4).answers = false;
  machine.pointAt(2);
  auto& commands = launched();
  machine.settings.set("BrightenPastMaximum", {false});
  const auto displays = commands.list();
  ASSERT_EQ(displays.size(), 2U);
  EXPECT_EQ(displays[0].number, 2U);
  EXPECT_EQ(displays[0].name, "Norvik 24");
  EXPECT_EQ(displays[0].level, 30);
  EXPECT_EQ(displays[0].minimum, -100);
  EXPECT_EQ(displays[0].maximum, 100);
  EXPECT_TRUE(displays[0].isUnderPointer);
  EXPECT_EQ(displays[1].level, std::nullopt);
  EXPECT_FALSE(displays[1].isUnderPointer);
}

TEST_F(RemoteControllerTest, MenuAndHotkeyEditorOpenAndAnOpenMenuFollowsASet) {
  addMonitor();
  auto& commands = launched();
  commands.showMenu();
  auto& menu = frame.statusItem->ownMenu;
  EXPECT_TRUE(menu.isOpen);
  commands.set(80, "");
  machine.time.settle();
  EXPECT_EQ(menu.sliderValue(1), 80);
  commands.showHotkeyEditor();
  ASSERT_NE(frame.editorWindow, nullptr);
}

TEST_F(RemoteControllerTest, AProgramThatEndsAnswersNothingAnyMore) {
  addMonitor();
  launched();
  delegate->applicationWillTerminate();
  EXPECT_EQ(machine.remoteCommands, nullptr);
}

}  // namespace
}  // namespace brivane
