#include <gmock/gmock.h>

#include <sstream>

#include "Tests/Support/TemporaryFolder.h"
#include "Tools/BrivaneDesk/RunCommand.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"
#include "Tools/BrivaneDesk/TranscriptFile.h"
#include "Tools/BrivaneDesk/Weather/RandomDay.h"

namespace brivane {
namespace {

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

const std::string oneMonitor =
    R"(desk {"displays": [{"identifier": 1, "name": "Halden", "firmware": {"level": 40}}]})"
    "\n";

struct Result {
  int status = 0;
  std::string output;
};

class RunCommandTest : public ::testing::Test {
 public:
  Result run(bool regenerates = false, bool traces = false) {
    std::ostringstream out;
    RunOptions options{files, regenerates, traces, {}, {}};
    const int status = runScenarios(options, out);
    return {status, out.str()};
  }
  void write(const std::string& name, const std::string& text) {
    files.push_back(folder.write(name, text));
  }

  TemporaryFolder folder;
  std::vector<std::filesystem::path> files;
};

TEST_F(RunCommandTest, AMissingTranscriptIsAFailureThatSaysHowToWriteOne) {
  write("day.scenario", oneMonitor + "at 1s buttons 1 30\nexpect level 1 = 30%\n");
  auto result = run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("day.transcript is missing"));
  EXPECT_THAT(result.output, HasSubstr("--regenerate"));
  EXPECT_EQ(run(true).status, 0);
  result = run();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, EndsWith("1 of 1 scenarios passed, 1 expectations, 1.000000 s "
                                      "simulated\n"));
}

TEST_F(RunCommandTest, ATranscriptThatDiffersIsShownAtItsFirstDifference) {
  write("day.scenario", oneMonitor + "at 1s buttons 1 30\nat 2s end\nat 3s end\n");
  ASSERT_EQ(run(true).status, 0);
  const auto file = folder / "day.transcript";
  std::string text = TemporaryFolder::read(file);
  const std::string line = "    2.000000  > end";
  ASSERT_NE(text.find(line), std::string::npos);
  text.replace(text.find(line), line.size(), "    2.000000  > rest");
  folder.write("day.transcript", text);
  const auto result = run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("    -     2.000000  > rest\n    +     2.000000  > end\n"));
}

TEST_F(RunCommandTest, AFailedExpectationNamesTheStepAndWhatWasFoundAndTheNextFileIsPlayed) {
  write("bad.scenario", oneMonitor + "at 1.5s expect level 1 = 41%\n");
  write("good.scenario", oneMonitor + "at 1s expect level 1 = 40%\n");
  const auto result = run(true);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("bad.scenario: line 2, at 1.500000 s: expect level 1 = 41%\n"
                                       "    found 40%\n"));
  EXPECT_THAT(result.output, HasSubstr("1 of 2 scenarios passed"));
  EXPECT_THAT(folder.names(), ElementsAre("bad.scenario", "good.scenario", "good.transcript"));
}

TEST_F(RunCommandTest, AMistakeInAScenarioOrItsDeskIsOneLine) {
  write("one.scenario", oneMonitor + "prss up\n");
  write("two.scenario", "desk {\"displas\": []}\n");
  write("four.scenario", "# first\n\n desk {\n  \"displays\": [],\n  oops}\n");
  write("five.scenario", "# first\n desk {oops}\n");
  write("three.scenario", "desk missing.json\n");
  files.push_back(folder / "none.scenario");
  files.push_back(folder / "");
  const auto result = run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(std::ranges::count(result.output, '\n'), 8) << result.output;
  EXPECT_THAT(result.output, HasSubstr("four.scenario: line 3: desk: line 5, column 3: "));
  EXPECT_THAT(result.output, HasSubstr("five.scenario: line 2: desk: line 2, column 8: "));
  EXPECT_THAT(result.output, HasSubstr("one.scenario: line 2: unknown step \"prss\""));
  EXPECT_THAT(result.output, HasSubstr("two.scenario: line 1: desk: /: unknown key \"displas\", "
                                       "did you mean \"displays\"?"));
  EXPECT_THAT(result.output, ContainsRegex("three.scenario: line 1: [^\n]*missing.json: "));
  EXPECT_THAT(result.output, HasSubstr("none.scenario: the file can't be read\n"));
  EXPECT_THAT(result.output, HasSubstr((folder / "").string() + ": the file can't be read\n"));
}

TEST_F(RunCommandTest, WhatWasFoundCanBeReadWhereThereIsNothing) {
  write("day.scenario", oneMonitor + R"(expect output "x"
expect mapping relay
start
expect trace "program started" 2 times
)");
  const auto result = run(true);
  EXPECT_THAT(result.output, HasSubstr("expect output \"x\"\n    found nothing at all\n"));
  EXPECT_THAT(result.output, HasSubstr("expect mapping relay\n    found an empty mapping\n"));
  EXPECT_THAT(result.output, HasSubstr("\"program started\" 2 times\n    found it 1 times\n"));
}

TEST_F(RunCommandTest, AnOrderOfTheTraceIsThatOfTheFirstLines) {
  write("day.scenario", oneMonitor + R"(pointer 1
mood 1 silent
pointer 1
expect trace "pointer" before "mood 1 silent"
expect trace "mood 1 silent" before "pointer"
expect trace "pointer" before "pointer 1"
expect trace "pointer" before "nobody"
expect trace "> pointer 1" 1 times between 1s and 2s
)");
  const auto output = run(true).output;
  EXPECT_THAT(output, testing::Not(HasSubstr("line 5")));
  EXPECT_THAT(output, HasSubstr("line 6, at 0.000000 s: expect trace \"mood 1 silent\" before "
                                "\"pointer\"\n    found the line > pointer 1\n"
                                "      before > mood 1 silent\n"));
  EXPECT_THAT(output, HasSubstr("    found one line with both: > pointer 1\n"));
  EXPECT_THAT(output, HasSubstr("    found no line with nobody\n"));
  EXPECT_THAT(output, HasSubstr("    found it 0 times\n"));
}

TEST_F(RunCommandTest, ALevelOfADisplayThatIsUnpluggedIsFoundMissing) {
  write("one.scenario", oneMonitor + "unplug 1\nat 1s expect level 1 = 40%\n");
  EXPECT_THAT(run().output, HasSubstr("    found no such display plugged in\n"));
}

TEST_F(RunCommandTest, ASettingThatIsAnotherIsShownAsItIs) {
  write("day.scenario", oneMonitor +
                            "setting A = {\"$date\": 1.5}\nexpect setting A = 1.5\n"
                            "setting A = 3.0\nexpect setting A = 3\n");
  const auto result = run();
  EXPECT_THAT(result.output, HasSubstr("    found {\"$date\":1.5}\n"));
  EXPECT_THAT(result.output, HasSubstr("    found 3.0\n"));
}

TEST_F(RunCommandTest, AStepThatNamesAnUnknownDisplayIsAMistakeWhereverItStands) {
  for (const auto* const step :
       {"unplug 9", "pointer 9", "swap 1 and 9", "expect level 9 = 40%", "expect hud level 5 on 9",
        "expect gamma 9 = dimmed by 4", "mood 9 silent", "move 9 to {0,0}"}) {
    files.clear();
    write("day.scenario", oneMonitor + "at 1h " + step + "\n");
    const auto result = run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output,
                HasSubstr("day.scenario: line 2: expected one of the desk's displays (1), found 9\n"
                          "0 of 1"))
        << step;
  }
}

TEST_F(RunCommandTest, AStepThatCannotBeTakenSaysWhyAndNothingOfATranscript) {
  write("day.scenario", oneMonitor + "at 1s headroom 1 0.5\nswap 1 and 1\nplug 1\n");
  const auto result = run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("line 2, at 1.000000 s: headroom 1 0.5\n"
                                       "    found a headroom that is not from 1 to 64\n"));
  EXPECT_THAT(result.output, HasSubstr("found the same display twice\n"));
  EXPECT_THAT(result.output, HasSubstr("found display 1 was not unplugged before\n"));
  EXPECT_THAT(result.output, testing::Not(HasSubstr("transcript")));
}

std::vector<std::string> withoutTimes(const ScenarioOutcome& outcome) {
  std::vector<std::string> lines;
  lines.reserve(outcome.transcript.size());
  for (const auto& line : outcome.transcript) lines.push_back(line.substr(14));
  return lines;
}

ScenarioOutcome play(const std::string& text) {
  const auto loaded = loadScenarioText(text, "day.scenario");
  if (const auto* const mistake = std::get_if<std::string>(&loaded)) {
    ADD_FAILURE() << *mistake;
    return {};
  }
  auto outcome = playScenario(std::get<LoadedScenario>(loaded), {});
  for (const auto& failure : outcome.failures) {
    ADD_FAILURE() << failure.line << " " << failure.step << " found " << failure.found;
  }
  return outcome;
}

TEST(ScenarioRun, AKilledProgramLeavesTheHardwareAsItIsAndTheNextOneClearsIt) {
  const auto outcome = play(oneMonitor +
                            "at 0s start\n"
                            "+1s hold control+option+down for 2s\n"
                            "expect gamma 1 = dimmed\n"
                            "expect mapping relay\n"
                            "kill\n"
                            "+1s expect gamma 1 = dimmed\n"
                            "expect mapping relay\n"
                            "expect program ended\n"
                            "start\n"
                            "+1s expect gamma 1 = calibrated\n"
                            "quit\n"
                            "+1s expect exit 0\n"
                            "expect clean\n");
  const auto lines = withoutTimes(outcome);
  EXPECT_EQ(std::ranges::count(lines, "program killed"), 1);
  EXPECT_EQ(std::ranges::count(lines, "program ended with status 0"), 1);
}

TEST(ScenarioRun, WhatADroppedProgramDoesAtTheEndIsNotInTheTranscript) {
  const auto outcome = play(oneMonitor + "at 0s start\nat 1s end\n");
  EXPECT_EQ(outcome.transcript.back(), "    1.000000  > end");
}

TEST(ScenarioRun, AStepComesAfterWhatTheProgramHasSetForTheSameMoment) {
  play(oneMonitor +
       "at 0s start\n"
       "at 1s key control+option+up\n"
       "at 2.199999s expect no trace \"alpha to 0\"\n");
}

TEST(ScenarioRun, AStepThatFollowsABusyOneWaitsForItsRealEnd) {
  // The slider's write takes longer than the step that moves it.
  const auto outcome = play(oneMonitor +
                            "at 0s start\n"
                            "at 1s menu open\n"
                            "slider \"menu.slider.accessibilityLabel\" to 60\n"
                            "key control+option+up\n"
                            "key control+option+up\n"
                            "+30ms end\n"
                            "at 2s expect level 1 = 70%\n");
  EXPECT_THAT(outcome.transcript, testing::Contains(testing::StartsWith("    1.020000  > key")));
  EXPECT_THAT(outcome.transcript, testing::Contains(testing::StartsWith("    1.070000  > key")));
  EXPECT_THAT(outcome.transcript, testing::Contains("    1.150000  > end"));
}

TEST(ScenarioRun, AStepWithATimeOfItsOwnLiesInTheMiddleOfALongOne) {
  const auto outcome = play(oneMonitor +
                            "at 1s hold a for 3s\n"
                            "at 2s press shift\n"
                            "+500ms release shift\n"
                            "at 5s end\n");
  EXPECT_THAT(outcome.transcript,
              ElementsAre("    1.000000  > hold a for 3s", "    2.000000  > press shift",
                          "    2.500000  > release shift", "    5.000000  > end"));
}

TEST(ScenarioRun, ADragIsOverWhenItsLastPositionIsWritten) {
  const auto outcome = play(oneMonitor +
                            "at 0s start\n"
                            "at 3s menu open\n"
                            "slider \"menu.slider.accessibilityLabel\" drag to 20 over 1s\n"
                            "end\n"
                            "expect level 1 = 20%\n");
  EXPECT_THAT(outcome.transcript, testing::Contains("    4.020000  > end"));
}

TEST(ScenarioRun, AKeyThatIsDownAlreadyCannotBePressed) {
  const auto loaded = loadScenarioText(oneMonitor +
                                           "at 1s hold control+up for 2s\n"
                                           "at 2s key control+down\n"
                                           "at 3s key control+down\n"
                                           "hold a+a for 1s\n"
                                           "press brightness-up\n"
                                           "press brightness-up\n",
                                       "day.scenario");
  const auto outcome = playScenario(std::get<LoadedScenario>(loaded), {});
  ASSERT_EQ(outcome.failures.size(), 3U);
  EXPECT_EQ(outcome.failures[0].line, 3);
  EXPECT_EQ(outcome.failures[0].found, "the key control is down already");
  EXPECT_EQ(outcome.failures[1].found, "the key a is down already");
  EXPECT_EQ(outcome.failures[2].found, "the key brightness-up is down already");
}

const std::string badHotkey = "setting BrightnessUpKeyCode = -1\nat 1s start\n";

TEST_F(RunCommandTest, AFatalErrorEndsItsScenarioAndTheNextOneIsPlayed) {
  write("bad.scenario", oneMonitor + badHotkey + "+1s expect program running\nexpect menu open\n");
  write("good.scenario", oneMonitor + "at 1s expect level 1 = 40%\n");
  const auto result = run(true);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output,
              HasSubstr("bad.scenario: line 3, at 1.000000 s: no fatal error is met\n"
                        "    found Brivane: fatal: the setting BrightnessUpKeyCode holds -1"));
  EXPECT_THAT(result.output, testing::Not(HasSubstr("expect ")));
  EXPECT_THAT(result.output, HasSubstr("1 of 2 scenarios passed"));
}

TEST(ScenarioRun, AFatalErrorThatIsExpectedEndsTheProgramAlone) {
  const auto outcome =
      play(oneMonitor + badHotkey +
           "+1s expect fatal \"BrightnessUpKeyCode holds -1\"\n"
           "expect program ended\n"
           "expect log \"Brivane: fatal: the setting BrightnessUpKeyCode\" 1 times\n"
           "setting BrightnessUpKeyCode removed\n"
           "start\n"
           "+1s key control+option+up\n"
           "expect level 1 = 45%\n"
           "quit\n"
           "+1s expect exit 0\n"
           "expect clean\n");
  const auto lines = withoutTimes(outcome);
  EXPECT_EQ(std::ranges::count(lines, "program aborted"), 1);
  EXPECT_EQ(std::ranges::count(lines, "program ended with status 0"), 1);
}

TEST(ScenarioRun, AFatalErrorThatIsExpectedMustBeMet) {
  const auto loaded = loadScenarioText(
      oneMonitor + "at 0s start\nat 1s expect fatal \"BrightnessUpKeyCode\"\n", "day.scenario");
  const auto outcome = playScenario(std::get<LoadedScenario>(loaded), {});
  ASSERT_EQ(outcome.failures.size(), 1U);
  EXPECT_EQ(outcome.failures[0].found, "nothing at all");
}

TEST(ScenarioRun, CallsThatAreToFailBeforeTheStartAreTheNextPrograms) {
  play(oneMonitor + R"(fail Hotkeys.registerHotkey 1 times
start
+1s expect log "could not register" 1 times
fail Hotkeys.registerHotkey 0 times
quit
+1s start
+1s expect log "could not register" 1 times
)");
}

TEST(ScenarioRun, AnExpectationBeforeAFatalErrorDoesNotMeanIt) {
  const auto loaded = loadScenarioText(
      oneMonitor + "expect fatal \"BrightnessUpKeyCode\"\n" + badHotkey, "day.scenario");
  const auto outcome = playScenario(std::get<LoadedScenario>(loaded), {});
  EXPECT_EQ(outcome.failures.size(), 2U);
}

TEST(ScenarioRun, ASecondStartFindsTheFirst) {
  play(oneMonitor +
       "at 0s start\n"
       "at 1s start second\n"
       "expect output \"Brivane is already running\"\n"
       "expect program running\n");
}

TEST(ScenarioRun, ACommandWorksBesideTheRunningProgram) {
  play(oneMonitor +
       "at 0s start\n"
       "at 1s expect mapping relay\n"
       "unmap\n"
       "expect mapping empty\n"
       "command --set 70\n"
       "expect level 1 = 70%\n");
}

TEST(ScenarioRun, TranscriptsLeaveOutWhatTheScenarioSays) {
  const auto outcome = play(oneMonitor +
                            "at 1s transcript off\n"
                            "at 2s buttons 1 30\n"
                            "at 3s transcript on\n"
                            "at 4s expect trace \"buttons 1 30\"\n");
  EXPECT_THAT(withoutTimes(outcome), ElementsAre("> transcript off", "transcript goes on"));
}

TEST(RandomDay, OneSeedGivesOneDayAndEveryDayIsAScenario) {
  EXPECT_EQ(randomDay(7), randomDay(7));
  EXPECT_NE(randomDay(7), randomDay(8));
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    const auto loaded = loadScenarioText(randomDay(seed), "day.scenario");
    const auto* const mistake = std::get_if<std::string>(&loaded);
    EXPECT_EQ(mistake, nullptr) << (mistake == nullptr ? "" : *mistake);
  }
}

TEST(RandomDay, LastsAtLeastAsLongAsItIsToldTo) {
  const auto loaded = loadScenarioText(randomDay(7, std::chrono::hours(1)), "day.scenario");
  EXPECT_GE(playScenario(std::get<LoadedScenario>(loaded), {}).length, std::chrono::hours(1));
}

TEST(ScenarioRun, ABoostOverACurveWithAKneeIsAKnownCurve) {
  for (const std::string capacity : {"5", "64", "1024"}) {
    const auto loaded = loadScenarioText(
        "desk {\"displays\": [{\"identifier\": 1, \"headroom\": 4, \"firmware\": {\"level\": 100}, "
        "\"gamma\": {\"capacity\": " +
            capacity +
            ", \"calibrated\": {\"red\": [0, 0.05, 0.6, 1], \"green\": [0, 0.1, 0.7, 1], "
            "\"blue\": [0, 0.1, 0.2, 1]}}}]}\n"
            "at 0s start\n+1s hold control+option+up for 6s\nexpect gamma 1 = boosted\n"
            "expect gamma known\n",
        "day.scenario");
    StageOptions watching;
    watching.isJudged = true;
    const auto outcome = playScenario(std::get<LoadedScenario>(loaded), watching);
    for (const auto& failure : outcome.failures) {
      ADD_FAILURE() << capacity << ": " << failure.step << " found " << failure.found;
    }
  }
}

TEST(ScenarioRun, AStraightTableIsKnownAfterACapturedOneThatWasBoosted) {
  const auto loaded = loadScenarioText(
      "desk {\"displays\": [{\"identifier\": 1, \"headroom\": 2, \"firmware\": {\"level\": 100}, "
      "\"gamma\": {\"calibrated\": {\"red\": [0, 1.2], \"green\": [0, 1.2], \"blue\": [0, 1.2]}}}]}"
      "\n"
      "at 0s start\n+1s key control+option+up\n+1s key control+option+down\n+1s end\n",
      "day.scenario");
  StageOptions judged;
  judged.isJudged = true;
  EXPECT_TRUE(playScenario(std::get<LoadedScenario>(loaded), judged).failures.empty());
}

TEST(ScenarioRun, ABreachOfTheRulesOfADayIsAFailureAtItsStep) {
  // A window system that has forgotten the panel's identity makes the program store under another.
  std::string always = "1";
  for (int occurrence = 2; occurrence <= 200; ++occurrence) {
    always += ", " + std::to_string(occurrence);
  }
  const auto loaded = loadScenarioText(
      "desk {\"displays\": [{\"identifier\": 1, \"serial\": 5, \"firmware\": {\"level\": 40}}], "
      "\"faults\": {\"DisplaySystem.panelIdentity\": [" +
          always + "]}}\nat 0s start\n+1s key control+option+up\n+1s end\n",
      "day.scenario");
  const auto& scenario = std::get<LoadedScenario>(loaded);
  EXPECT_TRUE(playScenario(scenario, {}).failures.empty());
  StageOptions judged;
  judged.isJudged = true;
  const auto outcome = playScenario(scenario, judged);
  ASSERT_FALSE(outcome.failures.empty());
  EXPECT_EQ(outcome.failures.front().line, 3);
  EXPECT_EQ(outcome.failures.front().time, std::chrono::milliseconds(1020));
  EXPECT_EQ(outcome.failures.front().step, "a level is stored only when it was set or seen");
  EXPECT_EQ(outcome.failures.front().found, "brightness.0.0.0 = 45");
}

TEST(ScenarioRun, ADayOnWhichAMappingIsLeftOtherThanAtFirstIsNoticed) {
  const std::string desk =
      "desk {\"hidMapping\": [{\"source\": 5, \"destination\": 6}, "
      "{\"source\": 7, \"destination\": 8}]}\n";
  play(desk + "at 0s start\n+1s quit\n+1s expect clean\nexpect mapping as at first\n");
  const auto loaded = loadScenarioText(
      desk + "expect mapping as at first\nmapping cleared\nexpect mapping as at first\n", "day");
  const auto outcome = playScenario(std::get<LoadedScenario>(loaded), {});
  ASSERT_EQ(outcome.failures.size(), 1U);
  EXPECT_EQ(outcome.failures.front().line, 4);
}

}  // namespace
}  // namespace brivane
