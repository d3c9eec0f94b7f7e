#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Input/CarbonHotkeyCoordinator.h"
#include "BrivaneCore/Input/CarbonHotkeyRegistrar.h"
#include "Tests/BrivaneCore/Input/StepNotes.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t shift = 512;
const std::vector<std::pair<std::uint32_t, std::uint16_t>> keysOfHotkeys = {
    {1, 126}, {2, 125}, {3, 120}, {4, 122}, {5, 80}, {6, 90}, {7, 80}, {8, 90}};

struct CarbonHotkeyCoordinatorTest : testing::Test {
  CarbonHotkeyCoordinatorTest() { machine.notes.take(); }

  void logKeys() { machine.settings.set("VerboseKeyLog", {true}); }
  std::vector<std::string> notesOfRegistering(bool tapActive) {
    coordinator->registerHotkeys(tapActive);
    return machine.notes.take();
  }
  std::vector<std::string> notesWithin(milliseconds length) {
    machine.time.runFor(length);
    return machine.notes.take();
  }

  /// All eight.
  void reregisterEverything() {
    coordinator->registrar->unregisterAll();
    coordinator->isRelayActive = true;
    coordinator->registerHotkeys(false);
    machine.notes.take();
  }

  FakeMachine machine;
  StepNotes steps{machine};
  std::unique_ptr<CarbonHotkeyCoordinator> coordinator = std::make_unique<CarbonHotkeyCoordinator>(
      machine, std::make_unique<CarbonHotkeyRegistrar>(machine.hotkeyGrabs, machine.systemLog),
      steps.handler());
};

TEST(CarbonHotkeyCoordinator, InstallsItsHandlerAtOnceAndRegistersNothing) {
  FakeMachine machine;
  const CarbonHotkeyCoordinator coordinator(
      machine, std::make_unique<CarbonHotkeyRegistrar>(machine.hotkeyGrabs, machine.systemLog),
      [](const Adjustment&, HotkeySource) { return true; });
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] install hotkey handler"));
  EXPECT_FALSE(coordinator.isRelayActive);
}

TEST_F(CarbonHotkeyCoordinatorTest, UserBindingsComeFirstThenTheRelayThenTheFunctionKeys) {
  coordinator->isRelayActive = true;
  EXPECT_THAT(notesOfRegistering(false), ElementsAre("[0] register hotkey 1 key 126 modifiers 6144",
                                                     "[0] register hotkey 2 key 125 modifiers 6144",
                                                     "[0] register hotkey 5 key 80 modifiers 0",
                                                     "[0] register hotkey 6 key 90 modifiers 0",
                                                     "[0] register hotkey 7 key 80 modifiers 512",
                                                     "[0] register hotkey 8 key 90 modifiers 512",
                                                     "[0] register hotkey 3 key 120 modifiers 0",
                                                     "[0] register hotkey 4 key 122 modifiers 0"));
}

TEST_F(CarbonHotkeyCoordinatorTest, TheKeysComeFromTheSettings) {
  machine.settings.set("BrightnessUpKeyCode", {std::int64_t{0}});
  machine.settings.set("BrightnessDownModifiers", {std::int64_t{256}});
  machine.settings.set("BrightnessKeyRelayUp", {std::int64_t{105}});
  machine.settings.set("BrightnessKeyRelayDown", {std::int64_t{107}});
  coordinator->isRelayActive = true;
  EXPECT_THAT(notesOfRegistering(true), ElementsAre("[0] register hotkey 1 key 0 modifiers 6144",
                                                    "[0] register hotkey 2 key 125 modifiers 256",
                                                    "[0] register hotkey 5 key 105 modifiers 0",
                                                    "[0] register hotkey 6 key 107 modifiers 0",
                                                    "[0] register hotkey 7 key 105 modifiers 512",
                                                    "[0] register hotkey 8 key 107 modifiers 512"));
}

TEST_F(CarbonHotkeyCoordinatorTest, WithEverythingOffAndTheTapActiveNothingIsRegistered) {
  machine.settings.set("CustomHotkeysEnabled", {false});
  machine.settings.set("KeepFunctionKeyFallback", {false});
  EXPECT_THAT(notesOfRegistering(true), IsEmpty());
}

TEST_F(CarbonHotkeyCoordinatorTest, WithoutTheTapTheFunctionKeysAreRegisteredWhateverTheSwitch) {
  machine.settings.set("CustomHotkeysEnabled", {false});
  for (const bool keep : {false, true}) {
    machine.settings.set("KeepFunctionKeyFallback", {keep});
    coordinator->registrar->unregisterAll();
    coordinator->registerHotkeys(false);
    EXPECT_TRUE(machine.hotkeyGrabs.holds(120, 0));
    EXPECT_TRUE(machine.hotkeyGrabs.holds(122, 0));
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, TheSwitchKeepsTheFunctionKeysBesideTheTap) {
  machine.settings.set("CustomHotkeysEnabled", {false});
  machine.settings.set("KeepFunctionKeyFallback", {true});
  EXPECT_THAT(notesOfRegistering(true), ElementsAre("[0] register hotkey 3 key 120 modifiers 0",
                                                    "[0] register hotkey 4 key 122 modifiers 0"));
}

TEST_F(CarbonHotkeyCoordinatorTest, AfterARefusedHotkeyTheOthersAreStillTried) {
  machine.hotkeyGrabs.taken = {{126, 6144}};
  coordinator->isRelayActive = true;
  coordinator->registerHotkeys(false);
  EXPECT_FALSE(coordinator->registrar->isRegistered(1));
  for (std::uint32_t id = 2; id <= 8; ++id) {
    EXPECT_TRUE(coordinator->registrar->isRegistered(id)) << id;
  }
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: could not register hotkey ctrl+opt+key126 (status -9878) — "
                          "another app may own it"));
}

TEST_F(CarbonHotkeyCoordinatorTest, RegisteringUnregistersNothingByItself) {
  machine.settings.set("CustomHotkeysEnabled", {false});
  coordinator->registerHotkeys(false);
  machine.notes.take();
  EXPECT_THAT(notesOfRegistering(true), IsEmpty());
  EXPECT_TRUE(coordinator->registrar->isRegistered(3));
}

TEST_F(CarbonHotkeyCoordinatorTest, RegisteringAfterUnregisteringAllInstallsTheHandlerFirst) {
  coordinator->registrar->unregisterAll();
  machine.notes.take();
  EXPECT_EQ(notesOfRegistering(true).front(), "[0] install hotkey handler");
  machine.hotkeyGrabs.press(126, 6144);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] step 5 snap carbonHotkey"));
}

TEST_F(CarbonHotkeyCoordinatorTest, EachHotkeyHasItsFirstStepAndItsLogLine) {
  struct Case {
    std::uint32_t id;
    std::string step;
    std::string line;
  };
  const std::vector<Case> cases = {
      {1, "step 5 snap carbonHotkey", "id=1 brightness UP -> handled"},
      {2, "step -5 snap carbonHotkey", "id=2 brightness DOWN -> handled"},
      {3, "step 5 snap carbonHotkey", "id=3 brightness UP -> handled"},
      {4, "step -5 snap carbonHotkey", "id=4 brightness DOWN -> handled"},
      {5, "step 5 snap hidRelay", "id=5 brightness UP -> handled"},
      {6, "step -5 snap hidRelay", "id=6 brightness DOWN -> handled"},
      {7, "step 1 hidRelay", "id=7 brightness UP (fine) -> handled"},
      {8, "step -1 hidRelay", "id=8 brightness DOWN (fine) -> handled"},
      {0, "step -5 snap carbonHotkey", "id=0 brightness DOWN -> handled"},
      {9, "step -5 snap carbonHotkey", "id=9 brightness DOWN -> handled"},
      {4294967295, "step -5 snap carbonHotkey", "id=4294967295 brightness DOWN -> handled"}};
  logKeys();
  for (const auto& [id, step, line] : cases) {
    coordinator->handlePress(id);
    EXPECT_THAT(machine.notes.take(),
                ElementsAre("[0] " + step, "[0] log Brivane: hotkey " + line));
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, PressesAreLoggedOnlyWhenAskedFor) {
  coordinator->handlePress(1);
  coordinator->handleRelease(1);
  machine.keys.keysDown = {80};
  coordinator->handleRelease(5);
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(CarbonHotkeyCoordinatorTest, HeldHotkeysSweepInTheirDirectionAndNameTheirSource) {
  const std::vector<std::pair<std::uint32_t, std::string>> sweeps = {
      {1, "step 5 carbonHotkey"},  {2, "step -5 carbonHotkey"}, {3, "step 5 carbonHotkey"},
      {4, "step -5 carbonHotkey"}, {5, "step 5 hidRelay"},      {6, "step -5 hidRelay"},
      {7, "step 5 hidRelay"},      {8, "step -5 hidRelay"},     {9, "step -5 carbonHotkey"}};
  for (const auto& [id, step] : sweeps) {
    const auto start =
        std::chrono::duration_cast<milliseconds>(machine.time.now().time_since_epoch());
    coordinator->handlePress(id);
    machine.notes.take();
    EXPECT_THAT(notesWithin(milliseconds(420)),
                ElementsAre("[" + std::to_string(start.count() + 410) + "] " + step))
        << id;
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, APressThatNoDisplayTakesIsLoggedAsSuchAndStillSweeps) {
  logKeys();
  steps.displayTakesIt = false;
  coordinator->handlePress(1);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] step 5 snap carbonHotkey",
                          "[0] log Brivane: hotkey id=1 brightness UP -> no controllable display "
                          "under cursor"));
  EXPECT_THAT(notesWithin(milliseconds(480)),
              ElementsAre("[410] step 5 carbonHotkey", "[470] step 5 carbonHotkey"))
      << "the sweep goes on whether or not a display takes its steps";
}

TEST_F(CarbonHotkeyCoordinatorTest, APressThatReregistersTheHotkeysStillSweeps) {
  coordinator.reset();
  coordinator = std::make_unique<CarbonHotkeyCoordinator>(
      machine, std::make_unique<CarbonHotkeyRegistrar>(machine.hotkeyGrabs, machine.systemLog),
      [this](const Adjustment&, HotkeySource) {
        coordinator->ramp.stop();
        coordinator->registrar->unregisterAll();
        coordinator->registerHotkeys(true);
        return true;
      });
  coordinator->registerHotkeys(true);
  machine.hotkeyGrabs.press(126, 6144);
  EXPECT_EQ(machine.time.timerCount(), 1u);
  machine.hotkeyGrabs.release(126);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(CarbonHotkeyCoordinatorTest, RegisteringLeavesASweepGoingAsLongAsItsKeyIsDown) {
  reregisterEverything();
  for (const auto& [id, key] : keysOfHotkeys) {
    machine.keys.keysDown = {key};
    coordinator->handlePress(id);
    reregisterEverything();
    EXPECT_EQ(notesWithin(milliseconds(470)).size(), 2u) << id;
    machine.keys.keysDown.clear();
    EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty())
        << id << ", whose release isn't reported";
    EXPECT_EQ(machine.time.timerCount(), 0u) << id;
  }
}

TEST_F(CarbonHotkeyCoordinatorTest,
       AReleaseEndsTheSweepWhateverTheKeyboardSaysOfAKeyThatIsNotTheRelays) {
  reregisterEverything();
  for (const auto& [id, key] : keysOfHotkeys) {
    if (id > 4) continue;
    machine.keys.keysDown = {key};
    for (const bool isRegisteredAnewMeanwhile : {false, true}) {
      coordinator->handlePress(id);
      if (isRegisteredAnewMeanwhile) reregisterEverything();
      coordinator->handleRelease(id);
      EXPECT_EQ(machine.time.timerCount(), 0u) << id;
    }
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, APressAfterReregisteringWatchesNoKey) {
  reregisterEverything();
  coordinator->handlePress(1);
  reregisterEverything();
  coordinator->handlePress(2);
  EXPECT_THAT(notesWithin(milliseconds(420)),
              ElementsAre("[0] step -5 snap carbonHotkey", "[410] step -5 carbonHotkey"));
}

TEST_F(CarbonHotkeyCoordinatorTest, TheKeyOfASweepIsTheOneThatWasRegistered) {
  reregisterEverything();
  machine.keys.keysDown = {126};
  coordinator->handlePress(1);
  machine.settings.set("BrightnessUpKeyCode", {std::int64_t{0}});
  reregisterEverything();
  EXPECT_EQ(notesWithin(milliseconds(470)).size(), 2u);
}

TEST_F(CarbonHotkeyCoordinatorTest, AReleaseEndsTheSweep) {
  for (const std::uint32_t id : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u}) {
    coordinator->handlePress(id);
    coordinator->handleRelease(id);
    EXPECT_EQ(machine.time.timerCount(), 0u) << id;
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, ARelayReleaseWhileItsKeyIsDownLeavesTheSweepGoing) {
  logKeys();
  machine.keys.keysDown = {80};
  for (const std::uint32_t id : {5u, 7u}) {
    coordinator->handlePress(id);
    machine.notes.take();
    coordinator->handleRelease(id);
    EXPECT_THAT(machine.notes.take(),
                ElementsAre("[0] log Brivane: hotkey id=" + std::to_string(id) +
                            " released but its key is still down — ramp continues"));
    EXPECT_EQ(machine.time.timerCount(), 1u);
  }
  for (const std::uint32_t id : {6u, 8u, 1u, 2u, 3u, 4u}) {
    coordinator->handlePress(id);
    coordinator->handleRelease(id);
    EXPECT_EQ(machine.time.timerCount(), 0u) << id;
  }
}

TEST_F(CarbonHotkeyCoordinatorTest, TheRelaysDownKeyIsCheckedForItsOwnHotkeys) {
  machine.settings.set("BrightnessKeyRelayDown", {std::int64_t{107}});
  machine.keys.keysDown = {107};
  for (const std::uint32_t id : {6u, 8u}) {
    coordinator->handlePress(id);
    coordinator->handleRelease(id);
    EXPECT_EQ(machine.time.timerCount(), 1u) << id;
  }
  coordinator->handlePress(5);
  coordinator->handleRelease(5);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(CarbonHotkeyCoordinatorTest, ShiftPressedWhileTheRelayKeyIsDownMakesTheSweepFiner) {
  coordinator->isRelayActive = true;
  coordinator->registerHotkeys(true);
  machine.notes.take();
  machine.keys.keysDown = {80};
  machine.hotkeyGrabs.press(80, 0);
  EXPECT_THAT(notesWithin(milliseconds(420)),
              ElementsAre("[0] step 5 snap hidRelay", "[410] step 5 hidRelay"));
  machine.keys.flags = modifierFlag::shift;
  coordinator->handleRelease(5);
  EXPECT_THAT(notesWithin(milliseconds(180)),
              ElementsAre("[530] step 1 hidRelay", "[590] step 1 hidRelay"));
  machine.keys.keysDown.clear();
  machine.hotkeyGrabs.release(80);
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(CarbonHotkeyCoordinatorTest,
       ShiftReleasedBeforeTheRelayKeyLeavesTheSweepToTheKeysOwnRelease) {
  coordinator->isRelayActive = true;
  coordinator->registerHotkeys(true);
  machine.notes.take();
  machine.keys.flags = modifierFlag::shift;
  machine.keys.keysDown = {80};
  machine.hotkeyGrabs.press(80, shift);
  EXPECT_THAT(notesWithin(milliseconds(420)),
              ElementsAre("[0] step 1 hidRelay", "[410] step 1 hidRelay"));
  machine.keys.flags = 0;
  machine.hotkeyGrabs.keepModifiers(0);
  EXPECT_THAT(notesWithin(milliseconds(120)), ElementsAre("[530] step 5 hidRelay"));
  machine.keys.keysDown.clear();
  machine.hotkeyGrabs.release(80);
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
}

/// Keeps the callbacks, so that a test can call them late.
class KeepingRegistrar : public HotkeyRegistering {
 public:
  struct Kept {
    Callback pressed;
    Callback released;
  };

  explicit KeepingRegistrar(Kept& keptCallbacks) : kept(keptCallbacks) {}

  void installHandler(Callback pressed, Callback released) override {
    kept = {std::move(pressed), std::move(released)};
  }
  bool registerHotkey(const HotkeyBinding&, std::uint32_t) override { return false; }
  bool isRegistered(std::uint32_t) const override { return false; }
  void unregisterAll() override {}

 private:
  Kept& kept;
};

TEST_F(CarbonHotkeyCoordinatorTest, CallbacksAfterTheEndAreIgnored) {
  KeepingRegistrar::Kept kept;
  coordinator = std::make_unique<CarbonHotkeyCoordinator>(
      machine, std::make_unique<KeepingRegistrar>(kept), steps.handler());
  machine.notes.take();
  kept.pressed(1);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] step 5 snap carbonHotkey"));
  coordinator.reset();
  kept.pressed(1);
  kept.released(1);
  EXPECT_THAT(notesWithin(milliseconds(1000)), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(CarbonHotkeyCoordinatorTest, DroppingTheCoordinatorWhileAKeyIsHeldLeavesNothingBehind) {
  coordinator->registerHotkeys(false);
  machine.hotkeyGrabs.press(126, 6144);
  coordinator.reset();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
  EXPECT_EQ(machine.hotkeyGrabs.handler, nullptr);
}

}  // namespace
}  // namespace brivane
