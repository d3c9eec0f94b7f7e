// The built program on simulated machines, from the command line.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <regex>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class DeskCommandsTest : public testing::Test {
 protected:
  ProgramResult run(const std::vector<std::string>& arguments) {
    return runProgram("Brivane", arguments, {{"BRIVANE_DESK", desk}});
  }

  std::string output(const std::vector<std::string>& arguments) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    return result.output;
  }

  void useDefaultDesk() {
    std::filesystem::copy_file(treeFolder() / "Machines/Desk/default-desk.json", desk);
  }

  /// One monitor with these firmware keys under the pointer.
  void useMonitor(const std::string& firmware) {
    folder.write("desk.json",
                 R"({"displays": [{"identifier": 2, "name": "Halden H27", "vendor": 1, "model": 2,
                     "serial": 3, "firmware": {)" +
                     firmware + "}}]}");
  }

  /// The report's "control:" line of the display under the cursor.
  std::string controlUnderCursor() {
    const std::string report = output({"--probe"});
    std::smatch cursor;
    if (!std::regex_search(report, cursor, std::regex("Cursor is on: (\\[\\d+\\] )"))) return "";
    const auto block = report.find("  " + cursor[1].str());
    const auto start = report.find("control: ", block);
    return report.substr(start, report.find('\n', start) - start);
  }

  TemporaryFolder folder;
  std::filesystem::path desk = folder / "desk.json";
};

TEST_F(DeskCommandsTest, TheDefaultDeskShowsEveryKindOfControl) {
  useDefaultDesk();
  const std::string report = output({"--probe"});
  EXPECT_THAT(report, StartsWith("Brivane probe\n  DDC transport available: yes\n"));
  EXPECT_THAT(report, HasSubstr("control: Apple display via DisplayServices -> "));
  EXPECT_THAT(report, HasSubstr("keys:    pass through to macOS"));
  EXPECT_THAT(report, ContainsRegex("current=[0-9]+ max=255"));
  EXPECT_THAT(report, ContainsRegex("current=[0-9]+ max=7000"));
  EXPECT_THAT(report, HasSubstr("control: NONE — brightness keys will pass through to macOS"));
  EXPECT_THAT(controlUnderCursor(), StartsWith("control: DDC/CI -> "));
}

TEST_F(DeskCommandsTest, TheNextReportShowsTheLevelThatWasSet) {
  useDefaultDesk();
  EXPECT_THAT(output({"--set", "40"}), ContainsRegex("^Set .* to 40%\n$"));
  EXPECT_EQ(controlUnderCursor(), "control: DDC/CI -> 40%");
}

TEST_F(DeskCommandsTest, OnlyTheDisplayUnderThePointerChanges) {
  useDefaultDesk();
  const auto before = linesOf(output({"--probe"}));
  output({"--set", "7"});
  const auto after = linesOf(output({"--probe"}));
  ASSERT_EQ(before.size(), after.size());
  int changed = 0;
  for (std::size_t i = 0; i < before.size(); ++i) changed += before[i] != after[i] ? 1 : 0;
  EXPECT_EQ(changed, 2);  // its control line and its raw values
}

TEST_F(DeskCommandsTest, TheSetModeRefusesAppleDisplays) {
  for (const bool isBuiltIn : {false, true}) {
    std::filesystem::remove_all(folder / "desk.json.state");
    folder.write("desk.json", std::string(R"({"displays": [{"identifier": 2, "name": "Pro Panel",
        "vendor": 1552, "firmware": null, "displayServices": {"level": 0.5}, "builtIn": )") +
                                  (isBuiltIn ? "true}]}" : "false}]}"));
    EXPECT_EQ(output({"--set", "40"}), "Failed to set Pro Panel — no DDC channel.\n");
    EXPECT_EQ(controlUnderCursor(), "control: Apple display via DisplayServices -> 50%");
  }
}

TEST_F(DeskCommandsTest, UnmapTakesAwayBrivanesEntriesAndThenFindsNone) {
  folder.write("desk.json", R"({"displays": [], "hidMapping": [
      {"source": 51539607663, "destination": 30064771182},
      {"source": 30064771129, "destination": 30064771113}]})");
  EXPECT_THAT(output({"--unmap"}), StartsWith("Brightness key mapping cleared."));
  EXPECT_THAT(output({"--unmap"}), StartsWith("No Brivane entries were in the HID mapping"));
}

TEST_F(DeskCommandsTest, UsageErrorsPrintOneLineAndEndWithStatusZero) {
  useDefaultDesk();
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"--set"}, {"--set", ""}, {"--set", "4x"}, {"--set", "1.5"}}) {
    EXPECT_EQ(output(arguments), "usage: Brivane --set <0-100>\n");
  }
}

TEST_F(DeskCommandsTest, ValuesBeyondTheRangeAreNamedAsGiven) {
  useDefaultDesk();
  EXPECT_THAT(output({"--set", "+40"}), HasSubstr(" to 40%\n"));
  EXPECT_THAT(output({"--set", "250"}), HasSubstr(" to 250%\n"));
  EXPECT_EQ(controlUnderCursor(), "control: DDC/CI -> 100%");
}

TEST_F(DeskCommandsTest, ProbeWithUnmapOnlyUnmaps) {
  useDefaultDesk();
  EXPECT_THAT(output({"--probe", "--unmap"}),
              AllOf(HasSubstr("nothing to clear"), Not(HasSubstr("Brivane probe"))));
}

TEST_F(DeskCommandsTest, AResidentStartIsRefusedWhileAnotherInstanceRuns) {
  folder.write("desk.json", R"({"displays": [], "applications": [
      {"bundleIdentifier": "com.quorrel.brivane", "processID": 4711}]})");
  const ProgramResult result = run({});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "Brivane is already running (pid 4711); exiting.\n");
  EXPECT_THAT(output({"--probe"}), HasSubstr("NOTE: Brivane is already running (pid 4711)."));
}

TEST_F(DeskCommandsTest, FilesAreOnlyMadeBesideTheDesk) {
  useDefaultDesk();
  output({"--set", "40"});
  EXPECT_THAT(folder.names(), testing::ElementsAre("desk.json", "desk.json.state"));
}

// Monitors that misbehave

TEST_F(DeskCommandsTest, MonitorsWithOddRepliesAreStillRead) {
  for (const auto* firmware : {R"("mood": "shifted")", R"("replyMilliseconds": 90)",
                               R"("maximum": 50)", R"("ignoresEveryOtherWrite": true)"}) {
    useMonitor(std::string("\"level\": 30, ") + firmware);
    EXPECT_EQ(controlUnderCursor(), std::string(firmware).find("50") == std::string::npos
                                        ? "control: DDC/CI -> 30%"
                                        : "control: DDC/CI -> 60%")
        << firmware;
  }
}

TEST_F(DeskCommandsTest, MonitorsThatDoNotAnswerAreReportedSo) {
  for (const auto* mood : {"silent", "busError", "nullReply", "garbled"}) {
    useMonitor(std::string("\"mood\": \"") + mood + "\"");
    EXPECT_THAT(controlUnderCursor(), StartsWith("control: NONE")) << mood;
    EXPECT_EQ(output({"--set", "40"}), "Failed to set Halden H27 — no DDC channel.\n") << mood;
  }
}

// Unusable desk files

struct BadDesk {
  const char* name;
  std::string content;
  const char* complaint;
  /// The number of zeros after `content`; made only when needed, because starting a program copies
  /// this process's memory.
  std::size_t zeros = 0;
};

class BadDeskTest : public DeskCommandsTest, public testing::WithParamInterface<BadDesk> {};

TEST_P(BadDeskTest, OneLineNamesTheFileAndTheProblemAndTheModeEndsWithStatusZero) {
  const std::string content = GetParam().content + std::string(GetParam().zeros, '\0');
  folder.write("desk.json", content);
  const ProgramResult result = run({"--probe"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(linesOf(result.errors), SizeIs(1)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("desk.json"));
  EXPECT_THAT(result.errors, HasSubstr(GetParam().complaint));
  EXPECT_THAT(folder.names(), SizeIs(1));
  EXPECT_EQ(TemporaryFolder::read(desk), content);
}

INSTANTIATE_TEST_SUITE_P(
    Desks, BadDeskTest,
    testing::Values(
        BadDesk{"Typo", R"({"displays": [{"identifier": 2, "nmae": "A"}]})", "nmae"},
        BadDesk{"WrongType", R"({"displays": [{"identifier": "two"}]})", "/displays/0/identifier"},
        BadDesk{"SameIdentifierTwice", R"({"displays": [{"identifier": 2}, {"identifier": 2}]})",
                "/displays/1/identifier"},
        BadDesk{"SameKeyTwice", R"({"displays": [], "displays": []})", "displays"},
        BadDesk{"Truncated", "{\"displays\": [", "line 1"}, BadDesk{"Empty", "", "empty"},
        BadDesk{"NoObject", "[]", "object"}, BadDesk{"Zeros", "", "100000000", 100'000'000}),
    [](const auto& bad) { return bad.param.name; });

TEST_F(DeskCommandsTest, AMissingDeskAndAFolderGetOneLineEach) {
  EXPECT_THAT(linesOf(run({"--probe"}).errors), SizeIs(1));
  std::filesystem::create_directory(desk);
  EXPECT_THAT(linesOf(run({"--probe"}).errors), SizeIs(1));
  EXPECT_EQ(run({"--probe"}).exitStatus, 0);
  EXPECT_EQ(run({}).exitStatus, 1);
}

TEST_F(DeskCommandsTest, AnUnreadableDeskGetsOneLine) {
  if (geteuid() == 0) {
    // Root can read any file; the rest runs as an ordinary user.
    useDefaultDesk();
    std::filesystem::permissions(desk, std::filesystem::perms::none);
    EXPECT_THAT(output({"--probe"}), StartsWith("Brivane probe"));
    return;
  }
  useDefaultDesk();
  std::filesystem::permissions(desk, std::filesystem::perms::none);
  const ProgramResult result = run({"--probe"});
  EXPECT_THAT(linesOf(result.errors), SizeIs(1));
  EXPECT_THAT(result.errors, HasSubstr("Permission denied"));
}

// Unusable settings and state

class DeskStateTest : public DeskCommandsTest {
 protected:
  DeskStateTest() {
    useMonitor("\"level\": 70");
    output({"--set", "40"});
    for (const auto& entry : std::filesystem::recursive_directory_iterator(state)) {
      if (TemporaryFolder::read(entry.path()).find("brightness.1.2.3") != std::string::npos) {
        settings = entry.path();
      }
    }
  }

  std::filesystem::path state = folder / "desk.json.state";
  std::filesystem::path settings;
};

TEST_F(DeskStateTest, TheSettingsAreInOneFile) {
  EXPECT_NE(settings, "");
}

TEST_F(DeskStateTest, BrokenSettingsAreReportedKeptAndReplaced) {
  for (const auto* content : {"{\"brightness", "[1, 2]", "", "{\"brightness.1.2.3\": 1e999}"}) {
    std::ofstream(settings) << content;
    const ProgramResult result = run({"--set", "50"});
    EXPECT_EQ(result.output, "Set Halden H27 to 50%\n");
    EXPECT_THAT(linesOf(result.errors), SizeIs(1)) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("can't be read"));
    EXPECT_EQ(result.exitStatus, 0);
    bool isKept = false;
    for (const auto& entry : std::filesystem::directory_iterator(settings.parent_path())) {
      isKept =
          isKept || (entry.path() != settings && TemporaryFolder::read(entry.path()) == content);
    }
    EXPECT_TRUE(isKept) << content;
    EXPECT_THAT(TemporaryFolder::read(settings), HasSubstr("\"brightness.1.2.3\": 50"));
  }
}

TEST_F(DeskStateTest, WithoutRoomForFilesTheMonitorIsSetTheFailureReportedAndNoFileDamaged) {
  const std::string before = TemporaryFolder::read(settings);
  // The limit is on files; the program's output goes through a pipe.
  const ProgramResult result =
      runProgram("Brivane", {"--set", "50"}, {{"BRIVANE_DESK", desk}}, {.largestFileBytes = 8});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.output, "Set Halden H27 to 50%\n");
  EXPECT_THAT(result.errors, HasSubstr("settings could not be saved"));
  EXPECT_EQ(TemporaryFolder::read(settings), before);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(state)) {
    EXPECT_NE(entry.path().extension(), ".new");
  }
}

TEST_F(DeskStateTest, SettingsThatAStoppedProcessHoldsAreLeftAloneAfterAShortWait) {
  const std::string before = TemporaryFolder::read(settings);
  const int lock = open((settings.string() + ".lock").c_str(), O_RDWR);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  const ProgramResult result = run({"--set", "50"});
  close(lock);
  EXPECT_EQ(result.output, "Set Halden H27 to 50%\n");
  EXPECT_THAT(linesOf(result.errors), SizeIs(1)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("another process holds the lock"));
  EXPECT_EQ(TemporaryFolder::read(settings), before);
}

TEST_F(DeskStateTest, ADamagedStateFileIsSetAsideAndTheDeskGoesOn) {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(state)) {
    if (entry.is_regular_file() && entry.file_size() > 0) std::ofstream(entry.path()) << "{\"torn";
  }
  const ProgramResult result = run({"--probe"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.output, HasSubstr("control: DDC/CI -> 70%"));
  EXPECT_NE(result.errors, "");
}

TEST_F(DeskCommandsTest, TwoProcessesThatSetAHundredTimesEachLoseAndTearNothing) {
  useMonitor("\"level\": 70");
  constexpr int rounds = 100;
  int done = 0;
  for (int i = 0; i < rounds; ++i) {
    RunningProgram first("Brivane", {"--set", "20"}, {{"BRIVANE_DESK", desk}});
    RunningProgram second("Brivane", {"--set", "80"}, {{"BRIVANE_DESK", desk}});
    for (RunningProgram* program : {&first, &second}) {
      const ProgramResult result = program->wait();
      EXPECT_EQ(result.errors, "");
      done += result.output.starts_with("Set Halden H27 to ") ? 1 : 0;
    }
  }
  EXPECT_EQ(done, 2 * rounds);
  EXPECT_THAT(controlUnderCursor(), ContainsRegex("control: DDC/CI -> (20|80)%"));
  // Every set goes out twice, and the monitor counts each.
  std::string counters;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(folder / "desk.json.state")) {
    if (entry.is_regular_file()) counters += TemporaryFolder::read(entry.path());
  }
  std::smatch count;
  ASSERT_TRUE(std::regex_search(counters, count, std::regex("\"writeCount\": ?(\\d+)")));
  EXPECT_EQ(count[1].str(), std::to_string(2 * 2 * rounds));
}

}  // namespace
}  // namespace brivane
