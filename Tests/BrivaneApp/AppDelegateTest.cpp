#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "BrivaneApp/AppDelegate.h"
#include "Tests/Support/ResidentBench.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Notes = std::vector<std::string>;

struct AppDelegateTest : testing::Test, ResidentBench {
  Notes launch() {
    delegate->applicationDidFinishLaunching();
    return takeNotes();
  }

  Notes terminate() {
    takeNotes();
    delegate->applicationWillTerminate();
    return takeNotes();
  }

  std::unique_ptr<AppDelegate> delegate = std::make_unique<AppDelegate>(machine, frame);
};

TEST_F(AppDelegateTest, BeforeTheLaunchThereIsNothingAndNothingToCleanUp) {
  delegate->applicationWillTerminate();
  EXPECT_THAT(takeNotes(), IsEmpty());
  EXPECT_EQ(frame.statusItem, nullptr);
}

TEST_F(AppDelegateTest, OpeningTheProgramAgainShowsItsMenuOnceThereIsOne) {
  delegate->applicationWasOpenedAgain();
  launch();
  EXPECT_FALSE(frame.statusItem->ownMenu.isOpen);
  delegate->applicationWasOpenedAgain();
  EXPECT_TRUE(frame.statusItem->ownMenu.isOpen);
}

TEST_F(AppDelegateTest, TheProgramStartsInThisOrder) {
  machine.suites["com.quorrel.tallowin"] =
      PropertyValue::Dictionary{{"SubZeroDimming", {false}}, {"VerboseKeyLog", {false}}};
  const std::string inputPath =
      "log Brivane: input path — event tap unavailable (no Accessibility grant); hotkeys "
      "up=ctrl+opt+key126 down=ctrl+opt+key125; fn+F1/F2 ACTIVE; relay pending";
  const Notes expected = {
      // gamma tables that a killed instance left
      "gamma restore all", "gamma restore all",
      // settings
      "open suite com.quorrel.tallowin", "set SubZeroDimming=false", "set VerboseKeyLog=false",
      "set MigratedFromTallowin=true", "log Brivane: carried 2 settings over from Tallowin",
      // the objects, then the signal
      "install hotkey handler", "observe termination",
      // the input path
      "register hotkey 1 key 126 modifiers 6144", "register hotkey 2 key 125 modifiers 6144",
      "register hotkey 3 key 120 modifiers 0", "register hotkey 4 key 122 modifiers 0", inputPath,
      // the relay
      "set SystemBrightnessKeysEnabled=true", "run /usr/bin/hidutil --get",
      "run /usr/bin/hidutil --set", "run /usr/bin/hidutil --get", "unregister hotkey 1",
      "unregister hotkey 2", "unregister hotkey 3", "unregister hotkey 4", "remove hotkey handler",
      "install hotkey handler", "register hotkey 1 key 126 modifiers 6144",
      "register hotkey 2 key 125 modifiers 6144", "register hotkey 5 key 80 modifiers 0",
      "register hotkey 6 key 90 modifiers 0", "register hotkey 7 key 80 modifiers 512",
      "register hotkey 8 key 90 modifiers 512", "register hotkey 3 key 120 modifiers 0",
      "register hotkey 4 key 122 modifiers 0", "every 60000 ms",
      "log Brivane: system brightness keys relayed through F19/F20",
      // the grant
      "set PromptedForAccessibilityBuild", "ask for the Accessibility grant", "every 2000 ms",
      // the displays: saved levels, changes, wakes, the monitors' buttons; then the menu
      "task for com.quorrel.brivane.ddc", "observe screen parameters", "observe wake",
      "observe screens' wake", "every 5000 ms", "task for main"};
  EXPECT_THAT(launch(), ElementsAreArray(expected));
}

TEST_F(AppDelegateTest, WithTheGrantTheTapRunsAndTheUserIsNotAsked) {
  machine.access.trusted = true;
  const auto notes = launch();
  EXPECT_THAT(notes, Contains("enable tap"));
  EXPECT_THAT(notes, Not(Contains("ask for the Accessibility grant")));
  EXPECT_THAT(notes, Not(Contains("every 2000 ms")));
  EXPECT_THAT(notes, Contains(HasSubstr("event tap ACTIVE (brightness keys)")));
}

TEST_F(AppDelegateTest, AGrantThatComesLaterStartsTheTapWithinTwoSeconds) {
  launch();
  run(10min + 500ms);
  EXPECT_FALSE(machine.taps.exists());
  machine.access.trusted = true;
  run(1500ms);
  EXPECT_TRUE(machine.taps.isEnabled());
  EXPECT_THAT(machine.systemLog.lines,
              Contains("Brivane: Accessibility granted — brightness keys now active."));
}

TEST_F(AppDelegateTest, ARelayThatIsSwitchedOffStaysOff) {
  machine.settings.values["SystemBrightnessKeysEnabled"] = {false};
  const auto notes = launch();
  EXPECT_THAT(notes, Contains("log Brivane: system brightness keys released back to macOS"));
  EXPECT_THAT(notes, Not(Contains("every 60000 ms")));
  EXPECT_EQ(mapping(), "(null)\n");
}

TEST_F(AppDelegateTest, ARelayThatCannotBeInstalledIsStoredAsOff) {
  toolWorks = false;
  launch();
  EXPECT_EQ(machine.settings.values.at("SystemBrightnessKeysEnabled"), PropertyValue{false});
}

TEST_F(AppDelegateTest, OldSettingsAreCopiedOnceAndLoggedOnlyWhenThereWereAny) {
  EXPECT_THAT(launch(), Not(Contains(HasSubstr("carried"))));
  machine.suites["com.quorrel.tallowin"] = PropertyValue::Dictionary{{"Later", {true}}};
  delegate = std::make_unique<AppDelegate>(machine, frame);
  EXPECT_THAT(launch(), Not(Contains(HasSubstr("carried"))));
  EXPECT_FALSE(machine.settings.values.contains("Later"));
}

TEST_F(AppDelegateTest, CopiedSettingsAreInForceDuringTheLaunchThatCopiesThem) {
  machine.suites["com.quorrel.tallowin"] =
      PropertyValue::Dictionary{{"SystemBrightnessKeysEnabled", {false}}};
  EXPECT_THAT(launch(), Contains("log Brivane: system brightness keys released back to macOS"));
}

TEST_F(AppDelegateTest, SavedLevelsAreRestoredAndThenTheMenuIsRefreshed) {
  auto& monitor = addMonitor();
  machine.settings.values["brightness.1.2.1"] = {std::int64_t{80}};
  launch();
  const int before = frame.statusItem->configurations;
  machine.time.settle();
  EXPECT_EQ(frame.statusItem->configurations, before + 1) << "the one at the end of the launch";
  run(4s);
  EXPECT_EQ(monitor.current, 80);
  EXPECT_EQ(frame.statusItem->configurations, before + 2);
}

TEST_F(AppDelegateTest, LevelsChangedWithTheMonitorsButtonsAreFollowed) {
  auto& monitor = addMonitor();
  launch();
  run(2s);
  monitor.current = 20;
  run(5s);
  machine.hotkeyGrabs.press(upArrow, controlAndOption);
  EXPECT_EQ(monitor.current, 25);
}

TEST_F(AppDelegateTest, TheProgramEndsInThisOrder) {
  addMonitor(2);
  auto& silent = addMonitor(3);
  silent.answers = false;
  machine.settings.values["ddc.1.3.1"] = {true};
  launch();
  run(3s);
  machine.announcements.wake.announce();
  machine.hotkeyGrabs.press(upArrow, controlAndOption);
  machine.hotkeyGrabs.release(upArrow);
  run(500ms);
  const auto notes = terminate();
  const Notes expected = {
      "gamma restore all", "gamma restore all", "gamma restore all",
      // the grant, the resynchronisation, the recovery, the connecting HUD, the relay
      "no more every 2000 ms", "no more every 5000 ms", "no more every 2000 ms too",
      "no more every 250 ms", "no more every 60000 ms",
      // the mapping
      "run /usr/bin/hidutil --get", "run /usr/bin/hidutil --set",
      // the input path
      "unregister hotkey 1", "unregister hotkey 2", "unregister hotkey 5", "unregister hotkey 6",
      "unregister hotkey 7", "unregister hotkey 8", "unregister hotkey 3", "unregister hotkey 4",
      "remove hotkey handler"};
  EXPECT_THAT(notes, ElementsAreArray(expected));
  EXPECT_EQ(mapping(), "(null)\n");
}

TEST_F(AppDelegateTest, ADisplayIsLeftAsItWasWhenTheProgramEndsWhileAHeldKeyDimsOrBoostsIt) {
  auto& monitor = addMonitor();
  const auto before = machine.gamma.tables.at(2);
  struct Held {
    std::uint16_t key;
    std::uint16_t hardwareLevel;
  };
  for (const auto& [key, hardwareLevel] : {Held{125, 0}, Held{126, 100}}) {
    monitor.current = hardwareLevel;
    delegate = std::make_unique<AppDelegate>(machine, frame);
    launch();
    run(2s);
    machine.keys.keysDown = {key};
    machine.hotkeyGrabs.press(key, controlAndOption);
    run(1s);
    const auto earlier = machine.gamma.tables.at(2);
    run(100ms);
    EXPECT_NE(machine.gamma.tables.at(2), earlier) << "in the middle of the ramp";
    EXPECT_THAT(terminate(), Contains("gamma restore all"));
    EXPECT_EQ(machine.gamma.tables.at(2), before);
    EXPECT_EQ(monitor.current, hardwareLevel);
    machine.gamma.calls.clear();
    run(10s);
    EXPECT_THAT(machine.gamma.calls, IsEmpty()) << "the ramp is over";
  }
}

TEST_F(AppDelegateTest, TheSignalCleansUpAndExits) {
  launch();
  machine.announcements.termination.announce();
  const auto notes = takeNotes();
  EXPECT_EQ(notes.front(), "gamma restore all");
  EXPECT_EQ(notes.back(), "exit 0");
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
  EXPECT_EQ(mapping(), "(null)\n");
}

TEST_F(AppDelegateTest, NothingOfTheProgramIsLeftAfterDestruction) {
  addMonitor();
  launch();
  delegate.reset();
  EXPECT_EQ(machine.announcements.termination.observerCount(), 0u);
  EXPECT_EQ(machine.time.timerCount(), 0u);
  machine.notes.take();
  run(10min);
  // The completion of the restore finds no objects.
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] task for main"));
}

}  // namespace
}  // namespace brivane
