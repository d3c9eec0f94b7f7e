#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Input/HotkeyManager.h"
#include "Tests/BrivaneCore/Input/StepNotes.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

struct HotkeyManagerTest : testing::Test {
  HotkeyManagerTest() { machine.notes.take(); }

  void grant() { machine.access.trusted = true; }
  void set(const std::string& key, bool value) { machine.settings.set(key, {value}); }
  void start() {
    manager->start();
    machine.notes.take();
  }
  std::string summary() {
    manager->start();
    return machine.systemLog.lines.back();
  }
  std::vector<std::string> notesWithin(milliseconds length) {
    machine.time.runFor(length);
    return machine.notes.take();
  }
  /// Holds the user's brighten binding until it sweeps.
  void holdUntilItSweeps() {
    machine.hotkeyGrabs.press(126, 6144);
    machine.time.runFor(milliseconds(420));
    machine.notes.take();
  }

  FakeMachine machine;
  StepNotes steps{machine};
  std::unique_ptr<HotkeyManager> manager =
      std::make_unique<HotkeyManager>(machine, steps.handler());
};

TEST_F(HotkeyManagerTest, StartingTriesTheTapThenRegistersAndThenLogsASummary) {
  grant();
  manager->start();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] create tap", "[0] enable tap",
                          "[0] register hotkey 1 key 126 modifiers 6144",
                          "[0] register hotkey 2 key 125 modifiers 6144",
                          "[0] log Brivane: input path — event tap ACTIVE (brightness keys); "
                          "hotkeys up=ctrl+opt+key126 down=ctrl+opt+key125; fn+F1/F2 off; relay "
                          "pending"));
  EXPECT_TRUE(manager->isEventTapActive());
}

TEST_F(HotkeyManagerTest, WithoutTheGrantTheFunctionKeysStandIn) {
  manager->start();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] register hotkey 1 key 126 modifiers 6144",
                          "[0] register hotkey 2 key 125 modifiers 6144",
                          "[0] register hotkey 3 key 120 modifiers 0",
                          "[0] register hotkey 4 key 122 modifiers 0",
                          "[0] log Brivane: input path — event tap unavailable (no Accessibility "
                          "grant); hotkeys up=ctrl+opt+key126 down=ctrl+opt+key125; fn+F1/F2 "
                          "ACTIVE; relay pending"));
  EXPECT_FALSE(manager->isEventTapActive());
}

TEST_F(HotkeyManagerTest, TheSummaryNamesTheBindingsAsTheyAreStored) {
  grant();
  set("SystemBrightnessKeysEnabled", false);
  machine.settings.set("BrightnessUpModifiers", {std::int64_t{256}});
  EXPECT_EQ(summary(),
            "Brivane: input path — event tap ACTIVE (brightness keys); hotkeys up=cmd+key126 "
            "down=ctrl+opt+key125; fn+F1/F2 off; relay off");
}

TEST_F(HotkeyManagerTest, TheSummarySaysThatTheBindingsAreDisabled) {
  grant();
  set("CustomHotkeysEnabled", false);
  EXPECT_EQ(summary(),
            "Brivane: input path — event tap ACTIVE (brightness keys); hotkeys up=disabled "
            "down=disabled; fn+F1/F2 off; relay pending");
}

TEST_F(HotkeyManagerTest, OneFunctionKeyIsEnoughForTheSummary) {
  machine.hotkeyGrabs.taken = {{120, 0}};
  EXPECT_THAT(summary(), testing::HasSubstr("fn+F1/F2 ACTIVE;"));
  machine.hotkeyGrabs.taken = {{120, 0}, {122, 0}};
  manager->stop();
  EXPECT_THAT(summary(), testing::HasSubstr("fn+F1/F2 off;"));
}

TEST_F(HotkeyManagerTest, TheSummaryNamesTheRelaysKeysOnceItIsActive) {
  manager->setRelayHotkeysEnabled(true);
  EXPECT_THAT(summary(), testing::EndsWith("; relay F19/F20"));
  machine.settings.set("BrightnessKeyRelayDown", {std::int64_t{105}});
  set("SystemBrightnessKeysEnabled", false);
  EXPECT_THAT(summary(), testing::EndsWith("; relay F19/F13")) << "whatever the setting says";
}

TEST_F(HotkeyManagerTest, ABrightnessKeyIsASnappedStepOfFive) {
  grant();
  start();
  EXPECT_EQ(machine.taps.sendKey(2), TapVerdict::swallow);
  EXPECT_EQ(machine.taps.sendKey(3), TapVerdict::swallow);
  steps.displayTakesIt = false;
  EXPECT_EQ(machine.taps.sendKey(3), TapVerdict::passThrough);
  EXPECT_THAT(notesWithin(milliseconds(1000)),
              ElementsAre("[0] step 5 snap mediaKey", "[0] step -5 snap mediaKey",
                          "[0] step -5 snap mediaKey"));
}

TEST_F(HotkeyManagerTest, AHotkeyStepsAndSweepsThroughTheSameHandler) {
  start();
  machine.hotkeyGrabs.press(122, 0);
  EXPECT_THAT(notesWithin(milliseconds(420)),
              ElementsAre("[0] step -5 snap carbonHotkey", "[410] step -5 carbonHotkey"));
  machine.hotkeyGrabs.release(122);
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(HotkeyManagerTest, TheUsersBindingsAreRefusedOnceNeitherIsRegistered) {
  machine.hotkeyGrabs.taken = {{125, 6144}};
  start();
  EXPECT_FALSE(manager->areUserBindingsRefused());
  machine.hotkeyGrabs.taken = {{125, 6144}, {126, 6144}};
  manager->reloadBindings();
  EXPECT_TRUE(manager->areUserBindingsRefused());
}

TEST_F(HotkeyManagerTest, WithoutTheTapOnlyTheRelayGivesBrightnessKeys) {
  start();
  EXPECT_FALSE(manager->hasBrightnessKeys());
  manager->setRelayHotkeysEnabled(true);
  EXPECT_TRUE(manager->hasBrightnessKeys());
}

TEST_F(HotkeyManagerTest, ATapThatTheSystemDisablesIsEnabledAgainThoughNobodyIsToldOfIt) {
  grant();
  start();
  machine.taps.disable(TapEvent::disabledByTimeout);
  EXPECT_TRUE(machine.taps.isEnabled());
}

TEST_F(HotkeyManagerTest, WhenTheGrantArrivesTheFunctionKeysAreUnregistered) {
  manager->setRelayHotkeysEnabled(true);
  start();
  manager->reloadBindings();
  machine.notes.take();
  EXPECT_FALSE(manager->startEventTap());
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  grant();
  EXPECT_TRUE(manager->startEventTap());
  EXPECT_THAT(
      machine.notes.take(),
      ElementsAre("[0] create tap", "[0] enable tap", "[0] unregister hotkey 1",
                  "[0] unregister hotkey 2", "[0] unregister hotkey 5", "[0] unregister hotkey 6",
                  "[0] unregister hotkey 7", "[0] unregister hotkey 8", "[0] unregister hotkey 3",
                  "[0] unregister hotkey 4", "[0] remove hotkey handler",
                  "[0] install hotkey handler", "[0] register hotkey 1 key 126 modifiers 6144",
                  "[0] register hotkey 2 key 125 modifiers 6144",
                  "[0] register hotkey 5 key 80 modifiers 0",
                  "[0] register hotkey 6 key 90 modifiers 0",
                  "[0] register hotkey 7 key 80 modifiers 512",
                  "[0] register hotkey 8 key 90 modifiers 512"));
  EXPECT_TRUE(manager->startEventTap());
  EXPECT_THAT(machine.notes.take(), IsEmpty()) << "no function key is left to unregister";
}

TEST_F(HotkeyManagerTest, EvenASingleFunctionKeyIsUnregisteredWhenTheGrantArrives) {
  for (const std::uint32_t takenKey : {120u, 122u}) {
    manager->stop();
    machine.access.trusted = false;
    machine.hotkeyGrabs.taken = {{takenKey, 0}};
    start();
    grant();
    EXPECT_TRUE(manager->startEventTap());
    EXPECT_FALSE(machine.hotkeyGrabs.holds(120, 0));
    EXPECT_FALSE(machine.hotkeyGrabs.holds(122, 0));
  }
}

TEST_F(HotkeyManagerTest, WhenTheGrantArrivesTheSwitchKeepsTheFunctionKeys) {
  set("KeepFunctionKeyFallback", true);
  start();
  grant();
  EXPECT_TRUE(manager->startEventTap());
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] create tap", "[0] enable tap"));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(120, 0));
}

TEST_F(HotkeyManagerTest, WhenTheGrantArrivesASweepGoesOnUntilItsRelease) {
  start();
  holdUntilItSweeps();
  machine.keys.keysDown = {126};
  grant();
  EXPECT_TRUE(manager->startEventTap());
  machine.notes.take();
  EXPECT_THAT(notesWithin(milliseconds(60)), ElementsAre("[470] step 5 carbonHotkey"));
  machine.hotkeyGrabs.release(126);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(HotkeyManagerTest, WithoutTheTapTheFunctionKeysAreBackAndASweepEnds) {
  grant();
  start();
  holdUntilItSweeps();
  machine.keys.keysDown = {126};
  manager->stopEventTap();
  EXPECT_FALSE(manager->isEventTapActive());
  EXPECT_TRUE(machine.hotkeyGrabs.holds(120, 0));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(122, 0));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(126, 6144));
  EXPECT_THAT(machine.notes.take(), testing::Contains("[420] remove tap"));
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(HotkeyManagerTest, HotkeysActInTheOpenMenuUnlessTheSettingsLeaveThemToTheSystem) {
  manager->setMenuOpen(true);
  EXPECT_TRUE(machine.hotkeyGrabs.isMenuOpen);
  manager->setMenuOpen(false);
  EXPECT_FALSE(machine.hotkeyGrabs.isMenuOpen);
  set("HoldHotkeysWhileMenuIsOpen", true);
  manager->setMenuOpen(true);
  EXPECT_FALSE(machine.hotkeyGrabs.isMenuOpen);
}

TEST_F(HotkeyManagerTest, AFunctionKeyUnregisteredWhileHeldStillReportsItsRelease) {
  start();
  machine.hotkeyGrabs.press(122, 0);
  machine.keys.keysDown = {122};
  grant();
  EXPECT_TRUE(manager->startEventTap());
  EXPECT_FALSE(machine.hotkeyGrabs.holds(122, 0));
  machine.hotkeyGrabs.release(122);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(HotkeyManagerTest, AFunctionKeyUnregisteredWhileHeldSweepsOnlyWhileItIsDown) {
  start();
  machine.hotkeyGrabs.press(122, 0);
  machine.keys.keysDown = {122};
  grant();
  EXPECT_TRUE(manager->startEventTap());
  machine.notes.take();
  EXPECT_THAT(notesWithin(milliseconds(420)), ElementsAre("[410] step -5 carbonHotkey"));
  machine.keys.keysDown.clear();
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(HotkeyManagerTest, ReloadingEndsASweepAndReregistersTheBindings) {
  grant();
  start();
  holdUntilItSweeps();
  machine.settings.set("BrightnessUpKeyCode", {std::int64_t{0}});
  manager->reloadBindings();
  EXPECT_THAT(notesWithin(milliseconds(1000)),
              ElementsAre("[420] unregister hotkey 1", "[420] unregister hotkey 2",
                          "[420] remove hotkey handler", "[420] install hotkey handler",
                          "[420] register hotkey 1 key 0 modifiers 6144",
                          "[420] register hotkey 2 key 125 modifiers 6144"));
}

TEST_F(HotkeyManagerTest, ReloadingWithoutTheTapKeepsTheFunctionKeys) {
  start();
  manager->reloadBindings();
  EXPECT_TRUE(machine.hotkeyGrabs.holds(120, 0));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(122, 0));
  EXPECT_FALSE(manager->isEventTapActive()) << "the tap is not tried";
}

TEST_F(HotkeyManagerTest, SuspendedBindingsAreUnregisteredAndNothingElseIs) {
  manager->setRelayHotkeysEnabled(true);
  start();
  manager->suspendUserBindings(true);
  EXPECT_FALSE(machine.hotkeyGrabs.holds(126, 6144));
  EXPECT_FALSE(machine.hotkeyGrabs.holds(125, 6144));
  EXPECT_EQ(machine.hotkeyGrabs.registrations.size(), 6u) << "relay and function keys";
  machine.hotkeyGrabs.press(80, 0);
  EXPECT_THAT(machine.notes.take(), testing::Contains("[0] step 5 snap hidRelay"));
  manager->suspendUserBindings(false);
  EXPECT_TRUE(machine.hotkeyGrabs.holds(126, 6144));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(125, 6144));
  EXPECT_EQ(machine.hotkeyGrabs.registrations.size(), 8u);
}

TEST_F(HotkeyManagerTest, BeginningOrEndingASuspensionEndsEvenARelayKeysSweep) {
  manager->setRelayHotkeysEnabled(true);
  start();
  for (const bool suspended : {true, false}) {
    machine.keys.keysDown = {80};
    machine.hotkeyGrabs.press(80, 0);
    manager->suspendUserBindings(suspended);
    EXPECT_EQ(machine.time.timerCount(), 0u) << suspended;
  }
}

TEST_F(HotkeyManagerTest, SuspendedBindingsStaySuspendedWhateverElseIsReregistered) {
  start();
  manager->suspendUserBindings(true);
  manager->reloadBindings();
  EXPECT_FALSE(machine.hotkeyGrabs.holds(126, 6144));
  manager->setRelayHotkeysEnabled(true);
  EXPECT_FALSE(machine.hotkeyGrabs.holds(126, 6144));
  grant();
  manager->startEventTap();
  EXPECT_FALSE(machine.hotkeyGrabs.holds(126, 6144));
}

TEST_F(HotkeyManagerTest, BindingsThatTheSettingsTurnOffStayOffAfterASuspension) {
  set("CustomHotkeysEnabled", false);
  start();
  manager->suspendUserBindings(true);
  manager->suspendUserBindings(false);
  EXPECT_FALSE(machine.hotkeyGrabs.holds(126, 6144));
}

TEST_F(HotkeyManagerTest, SuspendingTwiceDoesNothing) {
  start();
  manager->suspendUserBindings(false);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  manager->suspendUserBindings(true);
  machine.notes.take();
  manager->suspendUserBindings(true);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(HotkeyManagerTest, ASuspensionThatEndsAfterTheStopRegistersNothing) {
  start();
  manager->suspendUserBindings(true);
  manager->stop();
  manager->suspendUserBindings(false);
  EXPECT_TRUE(machine.hotkeyGrabs.registrations.empty());
  start();
  EXPECT_TRUE(machine.hotkeyGrabs.holds(126, 6144));
}

TEST_F(HotkeyManagerTest, SwitchingTheRelayOnRegistersItsKeysAndOffUnregistersThem) {
  grant();
  start();
  EXPECT_FALSE(manager->isRelayActive());
  EXPECT_FALSE(manager->relayHotkeysRegistered());
  EXPECT_TRUE(manager->setRelayHotkeysEnabled(true));
  EXPECT_TRUE(manager->isRelayActive());
  EXPECT_TRUE(manager->relayHotkeysRegistered());
  EXPECT_EQ(machine.hotkeyGrabs.registrations.size(), 6u);
  EXPECT_TRUE(manager->setRelayHotkeysEnabled(false));
  EXPECT_FALSE(manager->isRelayActive());
  EXPECT_FALSE(manager->relayHotkeysRegistered());
  EXPECT_EQ(machine.hotkeyGrabs.registrations.size(), 2u);
}

TEST_F(HotkeyManagerTest, SwitchingTheRelayUnregistersEverythingBeforeRegistering) {
  grant();
  start();
  manager->setRelayHotkeysEnabled(true);
  EXPECT_THAT(
      machine.notes.take(),
      ElementsAre("[0] unregister hotkey 1", "[0] unregister hotkey 2", "[0] remove hotkey handler",
                  "[0] install hotkey handler", "[0] register hotkey 1 key 126 modifiers 6144",
                  "[0] register hotkey 2 key 125 modifiers 6144",
                  "[0] register hotkey 5 key 80 modifiers 0",
                  "[0] register hotkey 6 key 90 modifiers 0",
                  "[0] register hotkey 7 key 80 modifiers 512",
                  "[0] register hotkey 8 key 90 modifiers 512"));
}

TEST_F(HotkeyManagerTest, SwitchingTheRelayWithoutTheTapKeepsTheFunctionKeys) {
  start();
  for (const bool enabled : {true, false}) {
    manager->setRelayHotkeysEnabled(enabled);
    EXPECT_TRUE(machine.hotkeyGrabs.holds(120, 0));
    EXPECT_TRUE(machine.hotkeyGrabs.holds(122, 0));
  }
  EXPECT_FALSE(manager->isEventTapActive()) << "the tap is not tried";
}

TEST_F(HotkeyManagerTest, SwitchingTheRelayEndsASweep) {
  grant();
  start();
  holdUntilItSweeps();
  manager->setRelayHotkeysEnabled(true);
  machine.notes.take();
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(HotkeyManagerTest, SwitchingTheRelayToItsPresentStateDoesNothing) {
  grant();
  start();
  holdUntilItSweeps();
  EXPECT_TRUE(manager->setRelayHotkeysEnabled(false));
  EXPECT_THAT(notesWithin(milliseconds(60)), ElementsAre("[470] step 5 carbonHotkey"));
  manager->setRelayHotkeysEnabled(true);
  machine.notes.take();
  EXPECT_TRUE(manager->setRelayHotkeysEnabled(true));
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(HotkeyManagerTest, TheRelayIsNotInForceWhileAnotherProgramHasEitherKey) {
  for (const std::uint32_t takenKey : {80u, 90u}) {
    machine.hotkeyGrabs.taken = {{takenKey, 0}};
    EXPECT_FALSE(manager->setRelayHotkeysEnabled(true));
    EXPECT_TRUE(manager->isRelayActive());
    EXPECT_FALSE(manager->relayHotkeysRegistered());
    EXPECT_FALSE(manager->setRelayHotkeysEnabled(true)) << "a refused key is not retried";
    EXPECT_TRUE(manager->setRelayHotkeysEnabled(false));
  }
}

TEST_F(HotkeyManagerTest, TheRelayDoesNotNeedItsKeysWithShift) {
  machine.hotkeyGrabs.taken = {{80, 512}, {90, 512}};
  EXPECT_TRUE(manager->setRelayHotkeysEnabled(true));
}

TEST_F(HotkeyManagerTest, StoppingTakesOutTheTapEndsTheSweepAndUnregistersEverything) {
  grant();
  start();
  holdUntilItSweeps();
  manager->stop();
  EXPECT_THAT(notesWithin(milliseconds(1000)),
              ElementsAre("[420] disable tap", "[420] remove tap", "[420] unregister hotkey 1",
                          "[420] unregister hotkey 2", "[420] remove hotkey handler"));
  EXPECT_FALSE(manager->isEventTapActive());
  manager->stop();
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(HotkeyManagerTest, ABrightnessKeyMayDropTheManagerAndIsStillDecided) {
  grant();
  manager = std::make_unique<HotkeyManager>(
      machine, [this, answer = std::vector<bool>{true}](const Adjustment&, HotkeySource) {
        manager.reset();
        return answer.front();
      });
  start();
  EXPECT_EQ(machine.taps.sendKey(2), TapVerdict::swallow);
  EXPECT_FALSE(machine.taps.exists());
  EXPECT_TRUE(machine.hotkeyGrabs.registrations.empty());
}

TEST_F(HotkeyManagerTest, DroppingTheManagerStopsIt) {
  grant();
  start();
  holdUntilItSweeps();
  manager.reset();
  EXPECT_THAT(notesWithin(milliseconds(1000)),
              ElementsAre("[420] disable tap", "[420] remove tap", "[420] unregister hotkey 1",
                          "[420] unregister hotkey 2", "[420] remove hotkey handler"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
