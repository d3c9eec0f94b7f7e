#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "BrivaneApp/SystemBrightnessKeyController.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto setting = "SystemBrightnessKeysEnabled";
constexpr auto released = "log Brivane: system brightness keys released back to macOS";
constexpr auto notInForce =
    "log Brivane: hidutil accepted the mapping but it is not in force — reverting and leaving the "
    "brightness keys with macOS";
constexpr auto wentMissing = "log Brivane: brightness key mapping went missing — re-applying";

/// Records every call of the controller in order.
struct NotingRelay : BuiltInPanelDriving, KeyMappingStore, RelayHotkeySwitching {
  explicit NotingRelay(std::vector<std::string>& callList) : calls(callList) {}

  void setDrivesBuiltInPanel(bool drives) override {
    calls.push_back(std::string("built-in panel ") + (drives ? "driven" : "left alone"));
    drivesBuiltInPanel = drives;
  }
  bool apply(const RelayKey& up, const RelayKey& down) override {
    calls.push_back("apply " + std::string(up.name) + "/" + std::string(down.name));
    isInForce = takesMapping;
    return reportsApplied;
  }
  RevertOutcome revert() override {
    calls.emplace_back("revert");
    isInForce = false;
    return RevertOutcome::failed;
  }
  bool isApplied(const RelayKey& up, const RelayKey& down) override {
    calls.push_back("check " + std::string(up.name) + "/" + std::string(down.name));
    return isInForce;
  }
  bool setRelayHotkeysEnabled(bool enabled) override {
    calls.push_back(std::string("hotkeys ") + (enabled ? "on" : "off"));
    return enabled ? hotkeysAreFree : false;
  }

  std::vector<std::string>& calls;
  bool takesMapping = true;
  bool reportsApplied = true;
  bool isInForce = false;
  bool hotkeysAreFree = true;
  bool drivesBuiltInPanel = false;
};

/// Records settings and log lines in the same list.
struct NotingDefaults : FakeUserDefaults {
  explicit NotingDefaults(std::vector<std::string>& callList) : calls(callList) {}
  void set(std::string_view key, const PropertyValue& value) override {
    calls.push_back("store " + std::string(key) + (value == PropertyValue{true} ? " true" : "") +
                    (value == PropertyValue{false} ? " false" : ""));
    FakeUserDefaults::set(key, value);
  }
  std::vector<std::string>& calls;
};

struct NotingLog : SystemLog {
  explicit NotingLog(std::vector<std::string>& callList) : calls(callList) {}
  void write(std::string_view line) override { calls.push_back("log " + std::string(line)); }
  std::vector<std::string>& calls;
};

struct CallNotingMachine : FakeMachine {
  UserDefaults& defaults() override { return notingDefaults; }
  SystemLog& log() override { return notingLog; }

  std::vector<std::string> calls;
  NotingDefaults notingDefaults{calls};
  NotingLog notingLog{calls};
};

struct SystemBrightnessKeyControllerTest : testing::Test {
  std::vector<std::string> take() { return std::exchange(machine.calls, {}); }

  std::vector<std::string> callsWithin(Microseconds time) {
    machine.time.runFor(time);
    return take();
  }

  bool isStoredOn() { return RelaySettings(machine.notingDefaults).systemBrightnessKeysEnabled(); }

  CallNotingMachine machine;
  NotingRelay relay{machine.calls};
  SystemBrightnessKeyController controller{machine, relay, relay, relay};
};

TEST_F(SystemBrightnessKeyControllerTest, SwitchingOnMapsChecksRegistersDrivesAndLogs) {
  controller.setEnabled(true);
  EXPECT_THAT(take(), ElementsAre("store SystemBrightnessKeysEnabled true", "apply F19/F20",
                                  "check F19/F20", "hotkeys on", "built-in panel driven",
                                  "log Brivane: system brightness keys relayed through F19/F20"));
  EXPECT_EQ(machine.time.timerCount(), 1u);
}

TEST_F(SystemBrightnessKeyControllerTest, SwitchingOffUndoesEverything) {
  controller.setEnabled(true);
  take();
  controller.setEnabled(false);
  EXPECT_THAT(take(), ElementsAre("store SystemBrightnessKeysEnabled false", "hotkeys off",
                                  "revert", "built-in panel left alone", released));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, SwitchingOffAgainDoesTheSame) {
  controller.setEnabled(false);
  EXPECT_THAT(take(), ElementsAre("store SystemBrightnessKeysEnabled false", "hotkeys off",
                                  "revert", "built-in panel left alone", released));
}

TEST_F(SystemBrightnessKeyControllerTest, TheMappingThatIsReadBackCountsNotTheToolsAnswer) {
  relay.reportsApplied = false;
  controller.setEnabled(true);
  EXPECT_TRUE(relay.drivesBuiltInPanel);
  EXPECT_TRUE(isStoredOn());
}

TEST_F(SystemBrightnessKeyControllerTest, AMappingThatIsNotInForceIsUndoneAndTheSettingTurnedOff) {
  relay.takesMapping = false;
  controller.setEnabled(true);
  EXPECT_THAT(take(),
              ElementsAre("store SystemBrightnessKeysEnabled true", "apply F19/F20",
                          "check F19/F20", notInForce, "hotkeys off", "revert",
                          "built-in panel left alone", "store SystemBrightnessKeysEnabled false"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, KeysThatAnotherProgramOwnsAreNamedAndTheMappingReverted) {
  relay.hotkeysAreFree = false;
  controller.setEnabled(true);
  EXPECT_THAT(
      take(),
      ElementsAre("store SystemBrightnessKeysEnabled true", "apply F19/F20", "check F19/F20",
                  "hotkeys on",
                  "log Brivane: could not register F19/F20 — another app may own them; reverting "
                  "the mapping and leaving the brightness keys with macOS",
                  "hotkeys off", "revert", "built-in panel left alone",
                  "store SystemBrightnessKeysEnabled false"));
  EXPECT_FALSE(relay.isInForce);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, AFailureWhileSwitchedOnSwitchesOff) {
  controller.setEnabled(true);
  relay.takesMapping = false;
  controller.setEnabled(true);
  EXPECT_FALSE(isStoredOn());
  EXPECT_FALSE(relay.drivesBuiltInPanel);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest,
       AToolThatRefusesEveryCallIsLoggedAndTheKeysAreStoredAsOff) {
  machine.processRunner.results = {FinishedProcess{1, ""}};
  HIDUtilKeyMapping mapping(
      HIDUtilKeyMapping::defaultRunner(machine.processRunner, machine.notingLog));
  SystemBrightnessKeyController other(machine, relay, mapping, relay);
  other.setEnabled(true);
  EXPECT_THAT(take(),
              ElementsAre("store SystemBrightnessKeysEnabled true", notInForce, "hotkeys off",
                          "built-in panel left alone", "store SystemBrightnessKeysEnabled false"));
  // Applying, checking and reverting each try to read the mapping.
  EXPECT_EQ(machine.processRunner.runs.size(), 3u);
  EXPECT_FALSE(isStoredOn());
}

TEST_F(SystemBrightnessKeyControllerTest, SwitchingOnTwiceLeavesExactlyOneTimerRunning) {
  controller.setEnabled(true);
  machine.time.runFor(30s);
  controller.setEnabled(true);
  EXPECT_EQ(machine.time.timerCount(), 1u);
  take();
  EXPECT_THAT(callsWithin(60s - 1us), IsEmpty());
  EXPECT_THAT(callsWithin(1us), ElementsAre("check F19/F20"));
}

TEST_F(SystemBrightnessKeyControllerTest, OnceAMinuteTheMappingIsCheckedAndLeftAloneWhileInForce) {
  controller.setEnabled(true);
  take();
  for (int minute = 0; minute < 3; ++minute) {
    EXPECT_THAT(callsWithin(60s - 1us), IsEmpty());
    EXPECT_THAT(callsWithin(1us), ElementsAre("check F19/F20"));
  }
}

TEST_F(SystemBrightnessKeyControllerTest, AMappingThatWentMissingIsAppliedAgainEachMinute) {
  controller.setEnabled(true);
  take();
  relay.isInForce = relay.takesMapping = false;
  EXPECT_THAT(callsWithin(60s), ElementsAre("check F19/F20", wentMissing, "apply F19/F20"));
  relay.takesMapping = true;
  EXPECT_THAT(callsWithin(60s), ElementsAre("check F19/F20", wentMissing, "apply F19/F20"));
  EXPECT_THAT(callsWithin(60s), ElementsAre("check F19/F20"));
  EXPECT_TRUE(relay.drivesBuiltInPanel);
}

TEST_F(SystemBrightnessKeyControllerTest, AKeyboardAttachedLaterGetsTheMappingAtOnceAndOnlyOnce) {
  controller.setEnabled(true);
  take();
  relay.isInForce = false;
  for (int device = 0; device < 3; ++device) machine.announcements.keyboards.announce();
  EXPECT_THAT(callsWithin(1s), ElementsAre("check F19/F20", wentMissing, "apply F19/F20"));
  machine.announcements.keyboards.announce();
  EXPECT_THAT(callsWithin(1s), ElementsAre("check F19/F20")) << "it has the mapping already";
}

TEST_F(SystemBrightnessKeyControllerTest, SwitchedOffItLeavesNewKeyboardsAlone) {
  controller.setEnabled(true);
  machine.announcements.keyboards.announce();
  controller.setEnabled(false);
  take();
  machine.announcements.keyboards.announce();
  EXPECT_THAT(callsWithin(1s), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, TheToolsAnswerToAReappliedMappingIsIgnored) {
  controller.setEnabled(true);
  take();
  relay.isInForce = relay.takesMapping = relay.reportsApplied = false;
  for (int minute = 0; minute < 2; ++minute) {
    EXPECT_THAT(callsWithin(60s), ElementsAre("check F19/F20", wentMissing, "apply F19/F20"));
  }
  EXPECT_TRUE(isStoredOn());
}

TEST_F(SystemBrightnessKeyControllerTest,
       AnotherProcessSwitchingTheSettingOffEndsReapplyingButNotTheTimer) {
  controller.setEnabled(true);
  machine.notingDefaults.values[setting] = {false};
  relay.isInForce = false;
  take();
  EXPECT_THAT(callsWithin(180s), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 1u);
  machine.notingDefaults.values[setting] = {true};
  EXPECT_THAT(callsWithin(60s), ElementsAre("check F19/F20", wentMissing, "apply F19/F20"));
  controller.setEnabled(false);
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, ConfiguredKeysAreUsedAndNamedEverywhere) {
  machine.notingDefaults.values["BrightnessKeyRelayUp"] = {std::int64_t{105}};
  machine.notingDefaults.values["BrightnessKeyRelayDown"] = {std::int64_t{107}};
  controller.setEnabled(true);
  EXPECT_THAT(take(), ElementsAre("store SystemBrightnessKeysEnabled true", "apply F13/F14",
                                  "check F13/F14", "hotkeys on", "built-in panel driven",
                                  "log Brivane: system brightness keys relayed through F13/F14"));
  machine.notingDefaults.values["BrightnessKeyRelayUp"] = {std::int64_t{64}};
  EXPECT_THAT(callsWithin(60s), ElementsAre("check F17/F14"));
}

TEST_F(SystemBrightnessKeyControllerTest, ReapplyingOnlyAppliesWhateverTheResult) {
  relay.reportsApplied = relay.takesMapping = false;
  controller.applyMapping();
  EXPECT_THAT(take(), ElementsAre("apply F19/F20"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(SystemBrightnessKeyControllerTest, StoppingEndsTheCheckAndLeavesTheMapping) {
  controller.setEnabled(true);
  take();
  controller.stop();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(callsWithin(180s), IsEmpty());
  EXPECT_TRUE(relay.isInForce);
}

TEST_F(SystemBrightnessKeyControllerTest, DestructionCancelsTheTimer) {
  {
    SystemBrightnessKeyController other(machine, relay, relay, relay);
    other.setEnabled(true);
    EXPECT_EQ(machine.time.timerCount(), 1u);
  }
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
