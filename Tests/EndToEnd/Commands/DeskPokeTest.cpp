// Two real processes on one desk: the resident program, and one that pokes the hardware. A third
// process watches and prints the effects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class DeskPokeTest : public testing::Test {
 protected:
  std::map<std::string, std::string> environment() { return {{"BRIVANE_DESK", desk}}; }

  void use(const std::string& text) { folder.write("desk.json", text); }

  void start() {
    watch = std::make_unique<RunningProgram>("brivane-desk", std::vector<std::string>{"watch"},
                                             environment());
    ASSERT_TRUE(watch->waitForOutput("system: awake\n"));
    program =
        std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
    ASSERT_TRUE(program->waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
    ASSERT_TRUE(shows("setting ddcmax.8738.2.0: 100")) << "it has spoken to the monitor";
  }

  /// The program's end has to be clean.
  void TearDown() override {
    if (program) {
      program->signal(SIGTERM);
      const auto result = program->wait();
      EXPECT_EQ(result.exitStatus, 0) << result.errors;
    }
    if (watch) {
      watch->signal(SIGTERM);
      EXPECT_EQ(watch->wait().exitStatus, 0);
    }
  }

  ProgramResult tryPoke(const std::string& step) {
    return runProgram("brivane-desk", {"poke", step}, environment());
  }

  void poke(const std::string& step) {
    const auto result = tryPoke(step);
    EXPECT_EQ(result.exitStatus, 0) << step << ": " << result.errors;
  }

  /// Waits until the watcher prints the line; lines before the last one found don't count.
  bool shows(const std::string& line) { return watch->waitForOutput(line); }

  std::string probe() {
    const auto result = runProgram("Brivane", {"--probe"}, environment());
    EXPECT_EQ(result.errors, "");
    return result.output;
  }

  TemporaryFolder folder;
  std::filesystem::path desk = folder.write("desk.json", R"({"displays": [
    {"identifier": 1, "builtIn": true},
    {"identifier": 2, "name": "Halden", "firmware": {"level": 40, "revertsAfterWake": true}}],
    "pointer": {"x": 2000, "y": 10}})");
  std::unique_ptr<RunningProgram> watch;
  std::unique_ptr<RunningProgram> program;
};

TEST_F(DeskPokeTest, KeysReachTheRunningProgram) {
  start();
  poke("key control+option+up");
  EXPECT_TRUE(shows("monitor 2: level 45, 2 writes"));
  poke("pointer 1");
  poke("key control+option+down");
  EXPECT_TRUE(shows("display-services 1: level 0.45"));
}

TEST_F(DeskPokeTest, AHeldKeyRampsUntilItIsReleased) {
  start();
  // With Shift it takes six seconds for the whole way.
  poke("hold shift+f19 for 1200ms");
  EXPECT_THAT(atRest([&] { return probe(); }), ContainsRegex("current=(4[2-9]|[5-9][0-9]) "));
}

TEST_F(DeskPokeTest, AModifierThatOnePokePressesCountsForTheNext) {
  start();
  poke("press control+option");
  poke("key up");
  EXPECT_TRUE(shows("monitor 2: level 45, 2 writes"));
  poke("release control+option");
}

TEST_F(DeskPokeTest, AKeyThatAnEarlierPokeReleasedCanBePressed) {
  start();
  poke("press control");
  ASSERT_TRUE(shows("keyboard: 1 keys down"));
  atRest([&] { return probe(); });
  program->signal(SIGSTOP);
  poke("release control");
  RunningProgram next("brivane-desk", {"poke", "key control+option+up"}, environment());
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  program->signal(SIGCONT);
  const auto result = next.wait();
  ASSERT_EQ(result.exitStatus, 0) << result.errors;
  EXPECT_TRUE(shows("monitor 2: level 45, 2 writes"));
}

TEST_F(DeskPokeTest, AKeyThatStaysDownCannotBePressed) {
  start();
  poke("press control");
  ASSERT_TRUE(shows("keyboard: 1 keys down"));
  const auto result = tryPoke("key control+option+up");
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.errors, "brivane-desk: the key control is down already\n");
  poke("release control");
}

TEST_F(DeskPokeTest, TheKeyboardsBrightnessKeysAreRelayedToTheProgramAndNotToTheSystem) {
  start();
  poke("key brightness-up");
  EXPECT_TRUE(shows("monitor 2: level 45, 2 writes"));
  EXPECT_THAT(probe(), HasSubstr("DisplayServices -> 50%"));
}

TEST_F(DeskPokeTest, AfterAWakeTheProgramRestoresWhatTheMonitorForgot) {
  start();
  poke("key control+option+up");
  ASSERT_TRUE(shows("monitor 2: level 45, 2 writes"));
  poke("sleep");
  ASSERT_TRUE(shows("asleep"));
  poke("wake");
  EXPECT_TRUE(shows("notice screens-did-wake"));
  // The monitor has been at 40 since it woke; the number of writes doesn't matter.
  EXPECT_TRUE(eventually([&] { return probe().find("current=45 ") != std::string::npos; }));
}

TEST_F(DeskPokeTest, APluggedInDisplayGetsItsDimmingBack) {
  use(R"({"displays": [{"identifier": 2, "firmware": {"level": 0}}],
          "defaults": {"com.quorrel.brivane": {"VerboseKeyLog": true}}})");
  start();
  for (int i = 0; i < 2; ++i) poke("key control+option+down");
  ASSERT_TRUE(shows("gamma 2: dimmed by 10"));
  poke("unplug 2");
  ASSERT_TRUE(shows("gamma 2: gone"));
  // Without this a display that comes back before the program has looked was never away.
  poke("announce screens");
  ASSERT_TRUE(program->waitForError("screen parameters changed but the arrangement did not"));
  poke("plug 2");
  ASSERT_TRUE(shows("gamma 2: calibrated"));
  EXPECT_TRUE(shows("gamma 2: dimmed by 10"));
}

TEST_F(DeskPokeTest, TheProbeShowsWhatIsPluggedInAndHowMonitorsBehave) {
  EXPECT_THAT(probe(), HasSubstr("DDC:     current=40 max=100"));
  poke("unplug 2");
  EXPECT_THAT(probe(), Not(HasSubstr("Halden")));
  poke("plug 2");
  poke("buttons 2 55");
  EXPECT_THAT(probe(), HasSubstr("DDC:     current=55 max=100"));
  poke("mood 2 silent");
  EXPECT_THAT(probe(), AllOf(HasSubstr("Halden"), Not(HasSubstr("current="))));
  poke("mood 2 answering");
  poke("monitor 2 sleeps");
  EXPECT_THAT(probe(), Not(HasSubstr("current=")));
  poke("monitor 2 wakes");
  EXPECT_THAT(probe(), HasSubstr("DDC:     current=55 max=100"));
  poke("revoke accessibility");
  EXPECT_THAT(probe(), HasSubstr("Accessibility granted:   no"));
}

TEST_F(DeskPokeTest, AnAnnouncementReachesTheProgramAlthoughNothingChanged) {
  use(R"({"displays": [{"identifier": 2}], "defaults": {"com.quorrel.brivane": {"VerboseKeyLog": true}}})");
  start();
  poke("announce screens");
  EXPECT_TRUE(program->waitForError("screen parameters changed but the arrangement did not"));
}

TEST_F(DeskPokeTest, APermissionGrantedMeanwhileIsUsed) {
  use(R"({"displays": [{"identifier": 2}], "grants": {"accessibility": false}})");
  start();
  poke("grant accessibility");
  EXPECT_TRUE(program->waitForError("Brivane: Accessibility granted"));
}

TEST_F(DeskPokeTest, WithoutAProgramTheSystemHandlesAKey) {
  const auto result = tryPoke("key brightness-up");
  EXPECT_EQ(result.output, "system brightness up, level 0.5625\n");
  EXPECT_THAT(probe(), HasSubstr("DisplayServices -> 56%"));
}

TEST_F(DeskPokeTest, AfterTheProgramsEndTheSystemHandlesKeysAgain) {
  start();
  program->signal(SIGKILL);
  program->wait();
  program.reset();
  EXPECT_EQ(tryPoke("mapping cleared").exitStatus, 0);
  EXPECT_EQ(tryPoke("key brightness-down").output, "system brightness down, level 0.4375\n");
}

TEST_F(DeskPokeTest, TheSecondOfTwoProgramsHasTheKeysAfterTheFirstOnesEnd) {
  use(R"({"displays": [{"identifier": 2, "firmware": {"level": 40}}], "bundleIdentifier": null})");
  start();
  const auto first = std::move(program);
  program = std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
  ASSERT_TRUE(program->waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
  first->signal(SIGKILL);
  first->wait();
  poke("announce screens");
  // The program may still be looking for its displays.
  for (int i = 0; i < 50 && probe().find("current=40") != std::string::npos; ++i) {
    poke("key control+option+up");
  }
  EXPECT_THAT(probe(), ContainsRegex("current=(45|50) "));
}

TEST_F(DeskPokeTest, APokeThatIsAskedToEndLeavesNoKeyDown) {
  start();
  RunningProgram held("brivane-desk", {"poke", "hold control+option+up for 1h"}, environment());
  ASSERT_TRUE(shows("keyboard: 3 keys down"));
  held.signal(SIGTERM);
  EXPECT_EQ(held.wait().exitStatus, 0);
  EXPECT_TRUE(shows("keyboard: 0 keys down"));
}

TEST_F(DeskPokeTest, HoweverEarlyAPokeIsAskedToEndItLeavesNoKeyDown) {
  for (std::size_t round = 0; round < 60; ++round) {
    RunningProgram held("brivane-desk", {"poke", "hold a+b+c for 1h"}, environment());
    std::this_thread::sleep_for(std::chrono::microseconds(250 * round));
    held.signal(SIGTERM);
    held.wait();
    const auto keys = TemporaryFolder::read(folder / "desk.json.state" / "keys-down.json");
    ASSERT_THAT(keys, Not(HasSubstr("arrived"))) << "round " << round;
  }
}

TEST_F(DeskPokeTest, AStepThatNeedsTheProgramsOwnProcessIsRefusedInOneLine) {
  for (const std::string step : {"menu open", "slider \"Halden\" to 30", "editor close", "quit",
                                 "kill", "start", "command --probe", "transcript off"}) {
    const auto result = tryPoke(step);
    EXPECT_EQ(result.exitStatus, 2) << step;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "brivane-desk: \"" + step +
                                 "\" is no step for a desk: it is done to the program's own "
                                 "process\n");
  }
  EXPECT_THAT(folder.names(), ElementsAre("desk.json")) << "and nothing was touched";
}

TEST_F(DeskPokeTest, AnImpossibleStepIsRefusedInOneLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"unplg 2", "unknown step \"unplg\", did you mean \"unplug\"?"},
      {"unplug 7", "expected one of the desk's displays (1, 2), found 7"},
      {"plug 2", "display 2 was not unplugged before"},
      {"mood 1 silent", "display 1 has no firmware"},
      {"expect beeps 1", "an expectation looks at a scenario, not at a desk"},
      {"buttons 2 99999999999",
       "expected a whole number from 0 to 1000000000, found \"99999999999\""},
      {"unplug 2\nplug 2", "a step is one line"},
      {"move 2 to {2000000,0}", "a coordinate that is not from -1000000 to 1000000"},
      {"", "expected a step, found the end of the line"}};
  for (const auto& [step, complaint] : cases) {
    const auto result = tryPoke(step);
    EXPECT_NE(result.exitStatus, 0) << step;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "brivane-desk: " + complaint + "\n");
  }
}

TEST_F(DeskPokeTest, AStepThatCannotBeStoredIsNotReportedAsDone) {
  folder.write("desk.json.state", "a file where the folder should be");
  const auto result = tryPoke("unplug 2");
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, HasSubstr("can't be saved in"));
}

TEST_F(DeskPokeTest, AStepIsDoneAlthoughADamagedFileHasToBeSetAside) {
  poke("buttons 2 60");
  folder.write("desk.json.state/monitor-2.json", "broken");
  const auto result = tryPoke("buttons 2 70");
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("it was set aside as monitor-2.json.unreadable-"));
  EXPECT_THAT(probe(), HasSubstr("DDC:     current=70 max=100"));
}

TEST_F(DeskPokeTest, ASettingThatCannotBeStoredIsNotReportedAsDone) {
  poke("setting Answer = 42");
  std::filesystem::create_directory(folder / "desk.json.state/com.quorrel.brivane.json.new");
  const auto result = tryPoke("setting Answer removed");
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, AllOf(HasSubstr("settings could not be saved"),
                                   HasSubstr("brivane-desk: the setting Answer was not kept\n")));
}

TEST_F(DeskPokeTest, TheDeskCanBeNamedAndTheStepTypedInWords) {
  const auto result = runProgram("brivane-desk", {"poke", desk, "move", "2", "to", "{-1920,0}"},
                                 {{"BRIVANE_DESK", "/nonexistent/desk.json"}});
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output, StartsWith("display 2 frame -1920 0 1920 1080\n"));
  const auto missing = runProgram("brivane-desk", {"poke", "unplug", "2"},
                                  {{"BRIVANE_DESK", "/nonexistent/desk.json"}});
  EXPECT_EQ(missing.exitStatus, 1);
  EXPECT_EQ(missing.errors, "brivane-desk: /nonexistent/desk.json: No such file or directory\n");
}

TEST_F(DeskPokeTest, KilledPokesLeaveEveryFileWholeAndTheProgramAtWork) {
  start();
  for (std::size_t round = 0; round < 120; ++round) {
    const std::vector<std::string> steps = {"unplug 2", "plug 2",       "sleep",
                                            "wake",     "mood 2 stale", "mood 2 answering"};
    const RunningProgram killed("brivane-desk", {"poke", steps[round % steps.size()]},
                                environment());
    std::this_thread::sleep_for(std::chrono::microseconds(50 * round));
    killed.signal(SIGKILL);
  }
  for (const auto& entry : std::filesystem::directory_iterator(folder / "desk.json.state")) {
    EXPECT_THAT(entry.path().filename().string(), Not(ContainsRegex("unreadable")));
  }
  tryPoke("plug 2");
  poke("wake");
  poke("mood 2 answering");
  EXPECT_THAT(probe(), HasSubstr("current=40"));
  // At the first press the program may still be looking for its displays.
  std::string report;
  for (int i = 0; i < 50; ++i) {
    poke("key control+option+up");
    report = probe();
    if (report.find("current=40") == std::string::npos) break;
  }
  EXPECT_THAT(report, ContainsRegex("current=(45|50) "));
}

}  // namespace
}  // namespace brivane
