#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "BrivaneApp/EntryPoint.h"
#include "BrivaneApp/Strings.h"
#include "BrivaneUI/StringCatalogue.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr auto ownEntries =
    "(\n        {\n        HIDKeyboardModifierMappingDst = 30064771182;\n"
    "        HIDKeyboardModifierMappingSrc = 280379760050208;\n    }\n)\n";

/// What `hidutil` prints when the mapping sends the brightness keys to F19 and F20.
std::string wholeMapping() {
  std::string text = "(\n";
  const auto add = [&](const char* source, const char* destination) {
    text += std::string("    {\n        HIDKeyboardModifierMappingDst = ") + destination +
            ";\n        HIDKeyboardModifierMappingSrc = " + source + ";\n    },\n";
  };
  for (const auto* up : {"280379760050208", "1095216660484", "51539607663"}) {
    add(up, "30064771182");
  }
  for (const auto* down : {"280379760050209", "1095216660485", "51539607664"}) {
    add(down, "30064771183");
  }
  return text + ")\n";
}

class CommandLineModesTest : public testing::Test {
 protected:
  CommandLineModesTest() { prints(FinishedProcess{0, "(null)\n"}); }

  void prints(const ProcessResult& result) { machine.processRunner.results = {result}; }

  /// Runs the program with these arguments behind its own path.
  std::string run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "/Applications/Brivane");
    out.str("");
    err.str("");
    EXPECT_EQ(runBrivane(arguments, machine, openFrame, out, err), 0);
    return out.str();
  }

  std::vector<std::string> lines(const std::vector<std::string>& arguments) {
    std::istringstream text(run(arguments));
    std::vector<std::string> all;
    for (std::string line; std::getline(text, line);) all.push_back(line);
    return all;
  }

  FakeMachine machine;
  int framesOpened = 0;
  FrameOpener openFrame = [this](ResidentMachine&) -> std::unique_ptr<Frame> {
    ++framesOpened;
    return nullptr;
  };
  std::ostringstream out;
  std::ostringstream err;
};

using SetModeTest = CommandLineModesTest;
using UnmapModeTest = CommandLineModesTest;
using ProbeModeTest = CommandLineModesTest;

// --set

TEST_F(SetModeTest, TheDisplayUnderThePointerIsSetAndTheLineNamesIt) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  auto& other = machine.addMonitor(3, "Beta", "disp1", 4, 5, 6);
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "40"}), "Set Studio Wide to 40%\n");
  EXPECT_EQ(monitor.current, 40);
  EXPECT_EQ(other.setCount, 0);
}

TEST_F(SetModeTest, ThePercentIsOfTheMonitorsOwnMaximum) {
  auto& monitor = machine.addMonitor(2, "Big", "disp0", 1, 2, 3);
  monitor.max = 7000;
  machine.pointAt(2);
  run({"--set", "40"});
  EXPECT_EQ(monitor.current, 2800);
}

TEST_F(SetModeTest, WithoutAUsableValueTheUsageLineIsPrintedAndNothingIsTouched) {
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  const std::string usage = "usage: Brivane --set <0-100>\n";
  EXPECT_EQ(run({"--set"}), usage);
  for (const auto* value : {"", "4x", "1.5", " 40", "12345678901234567890", "+", "--set"}) {
    EXPECT_EQ(run({"--set", value}), usage) << value;
  }
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(SetModeTest, AValueMayHaveASign) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "+40"}), "Set Studio Wide to 40%\n");
  EXPECT_EQ(monitor.current, 40);
}

TEST_F(SetModeTest, ValuesBeyondTheRangeArePassedOnAndNamedAsGiven) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "250"}), "Set Studio Wide to 250%\n");
  EXPECT_EQ(monitor.current, 100);
  EXPECT_EQ(run({"--set", "-5"}), "Set Studio Wide to -5%\n");
  EXPECT_EQ(monitor.current, 0);
}

TEST_F(SetModeTest, WithTwoSwitchesTheValueAfterTheFirstIsUsed) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  run({"--set", "30", "--set", "60"});
  EXPECT_EQ(monitor.current, 30);
}

TEST_F(SetModeTest, WithNoDisplayUnderThePointerOneLineSaysSo) {
  EXPECT_EQ(run({"--set", "40"}), "Could not determine which display the cursor is on.\n");
}

TEST_F(SetModeTest, AMonitorThatDoesNotAnswerGetsTheFailureLine) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  monitor.answers = false;
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "40"}), "Failed to set Studio Wide — no DDC channel.\n");
  EXPECT_EQ(monitor.setCount, 0);
}

TEST_F(SetModeTest, AnAppleDisplayOrTheBuiltInPanelGetsTheFailureLineAndKeepsItsLevel) {
  machine.displayServices.install(machine.loader);
  machine.displaySystem.add({5, 1552, 44593, 9, false}, "Pro Panel");
  machine.displaySystem.add({1, 1552, 41040, 0, true}, "Built-in");
  for (const DisplayID display : {5U, 1U}) {
    machine.displayServices.levels[display] = 0.5F;
    machine.displayServices.canChange[display] = true;
    machine.pointAt(display);
    EXPECT_EQ(run({"--set", "40"}), std::string("Failed to set ") +
                                        (display == 5 ? "Pro Panel" : "Built-in") +
                                        " — no DDC channel.\n");
    EXPECT_EQ(machine.displayServices.levels[display], 0.5F);
  }
  EXPECT_THAT(machine.settings.values, IsEmpty());
}

TEST_F(SetModeTest, TheValueIsCheckedBeforeThePointer) {
  EXPECT_EQ(run({"--set", "4x"}), "usage: Brivane --set <0-100>\n");
}

TEST_F(SetModeTest, ARefusedWriteGetsTheFailureLine) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  monitor.nextWriteStatuses = {0, 5};  // the read's request goes out, the set does not
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "40"}), "Failed to set Studio Wide — no DDC channel.\n");
  EXPECT_EQ(monitor.current, 50);
}

TEST_F(SetModeTest, TheLevelIsSavedForTheResidentProgram) {
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  run({"--set", "40"});
  EXPECT_EQ(machine.settings.values.at("brightness.1.2.3"), (PropertyValue{std::int64_t{40}}));
  EXPECT_EQ(machine.settings.values.at("ddc.1.2.3"), PropertyValue{true});
  EXPECT_EQ(machine.settings.values.at("ddcmax.1.2.3"), (PropertyValue{std::int64_t{100}}));
}

TEST_F(SetModeTest, SoftwareEffectsOfARunningInstanceAreLeftAlone) {
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.gamma.add(2, 256);
  machine.pointAt(2);
  run({"--set", "40"});
  EXPECT_THAT(machine.gamma.calls, IsEmpty());
}

TEST_F(SetModeTest, SettingWorksWhileTheResidentProgramRuns) {
  machine.apps.running["com.quorrel.brivane"] = {4711};
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  EXPECT_EQ(run({"--set", "40"}), "Set Studio Wide to 40%\n");
  EXPECT_EQ(err.str(), "");
}

// --unmap

const std::vector<std::string> stopReapplying = {
    "A running Brivane re-applies the mapping within a minute unless the",
    "feature is switched off. Turn off \"Use System Brightness Keys\" in the",
    "menu, or, equivalently:",
    "  defaults write com.quorrel.brivane SystemBrightnessKeysEnabled -bool false"};

TEST_F(UnmapModeTest, RemovedEntriesAreAnnouncedWithTheAdvice) {
  prints(FinishedProcess{0, ownEntries});
  EXPECT_THAT(
      lines({"--unmap"}),
      ElementsAre("Brightness key mapping cleared. The keys are back with macOS.",
                  stopReapplying[0], stopReapplying[1], stopReapplying[2], stopReapplying[3]));
  EXPECT_THAT(machine.processRunner.runs.back(),
              ElementsAre("/usr/bin/hidutil", "property", "--set", "{\"UserKeyMapping\":[]}"));
}

TEST_F(UnmapModeTest, WithNothingToRemoveOtherEntriesStay) {
  EXPECT_THAT(
      lines({"--unmap"}),
      ElementsAre("No Brivane entries were in the HID mapping — nothing to clear.",
                  "Anything else in it was left alone. If the brightness keys are",
                  "still not working, the cause is not this app's mapping.", stopReapplying[0],
                  stopReapplying[1], stopReapplying[2], stopReapplying[3]));
  EXPECT_THAT(machine.processRunner.runs, SizeIs(1));
}

TEST_F(UnmapModeTest, TheAdviceNamesTheMenuItemByItsTitle) {
  BuiltResources resources("en");
  const StringCatalogue texts(resources, machine.log(), applicationBundle);
  const std::string item = texts.text(strings::menuUseSystemBrightnessKeys);
  EXPECT_THAT(run({"--unmap"}), HasSubstr("Turn off \"" + item + "\" in the\nmenu"));
}

TEST_F(UnmapModeTest, AToolThatCannotRunGetsOneLineAndNoAdvice) {
  prints(ProcessNotStarted{"No such file or directory"});
  EXPECT_EQ(run({"--unmap"}),
            "Could not run /usr/bin/hidutil. A reboot also clears the mapping.\n");
  prints(FinishedProcess{1, ""});
  EXPECT_EQ(run({"--unmap"}),
            "Could not run /usr/bin/hidutil. A reboot also clears the mapping.\n");
}

TEST_F(UnmapModeTest, UnmapTakesPrecedenceWhateverTheOrderOfTheSwitches) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"--probe", "--unmap"}, {"--unmap", "--probe"}, {"--set", "40", "--unmap"}}) {
    const std::string text = run(arguments);
    EXPECT_THAT(text, HasSubstr("nothing to clear"));
    EXPECT_THAT(text, Not(HasSubstr("Brivane probe")));
    EXPECT_THAT(text, Not(HasSubstr("usage")));
  }
}

// --probe

TEST_F(ProbeModeTest, WithoutDisplaysTheReportEndsThere) {
  EXPECT_THAT(
      lines({"--probe"}),
      ElementsAre("Brivane probe", "  DDC transport available: no", "  Accessibility granted:   no",
                  "  System brightness keys: enabled — mapping NOT in force via F19/F20",
                  "        The keys are still with macOS. Run Brivane --probe again",
                  "        with the app running, or check the log for a hidutil failure.", "",
                  "  No displays reported by CoreGraphics."));
}

TEST_F(ProbeModeTest, AMonitorThatAnswersIsReportedWithItsRawValues) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 4268, 41156, 7);
  monitor.max = 255;
  monitor.current = 128;
  machine.pointAt(2);
  machine.access.trusted = true;
  prints(FinishedProcess{0, wholeMapping()});
  EXPECT_THAT(
      lines({"--probe"}),
      ElementsAre("Brivane probe", "  DDC transport available: yes",
                  "  Accessibility granted:   yes",
                  "  System brightness keys: enabled — mapping in force via F19/F20", "",
                  "  [2] Studio Wide", "      built-in: no",
                  "      vendor=4268 model=41156 serial=7", "      control: DDC/CI -> 50%",
                  "      DDC:     current=128 max=255", "", "  Cursor is on: [2] Studio Wide"));
  EXPECT_EQ(monitor.setCount, 0);
}

TEST_F(ProbeModeTest, AMonitorThatAnswersOnlyTheProbePrintsMinusOnePercent) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  int replies = 0;
  monitor.reply = [&]() -> std::vector<std::uint8_t> {
    if (++replies > 1) return {};
    return {0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0x64, 0x00, 0x32};
  };
  EXPECT_THAT(run({"--probe"}), HasSubstr("      control: DDC/CI -> -1%\n"
                                          "      DDC:     current=50 max=100\n"));
}

TEST_F(ProbeModeTest, AMonitorThatDoesNotAnswerGetsTheFourLines) {
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3).answers = false;
  EXPECT_THAT(run({"--probe"}),
              HasSubstr("      control: NONE — brightness keys will pass through to macOS\n"
                        "      DDC:     no response. If this is a third-party monitor,\n"
                        "               check for a DDC/CI setting in its on-screen menu,\n"
                        "               and note that DisplayLink adapters block DDC entirely.\n"));
}

TEST_F(ProbeModeTest, AnAppleDisplayIsReadThroughDisplayServices) {
  machine.displayServices.install(machine.loader);
  machine.displayServices.levels[5] = 0.625F;
  machine.displayServices.canChange[5] = true;
  machine.displaySystem.add({5, 1552, 44593, 9, false}, "Pro Panel");
  EXPECT_THAT(run({"--probe"}),
              HasSubstr("      control: Apple display via DisplayServices -> 63%\n"
                        "      DDC:     n/a (Apple panels do not implement DDC/CI)\n\n"));
}

TEST_F(ProbeModeTest, AnAppleDisplayWhoseLevelCannotBeReadIsUnreadable) {
  machine.displayServices.install(machine.loader);
  machine.displayServices.canChange[5] = true;
  machine.displayServices.getStatus = 1;
  machine.displaySystem.add({5, 1552, 44593, 9, false}, "Pro Panel");
  EXPECT_THAT(run({"--probe"}),
              HasSubstr("      control: Apple display via DisplayServices -> unreadable\n"));
}

TEST_F(ProbeModeTest, TheBuiltInPanelSaysWhoDrivesItsKeys) {
  machine.displayServices.install(machine.loader);
  machine.displayServices.levels[1] = 0.5F;
  machine.displaySystem.add({1, 1552, 1, 0, true}, "Built-in");
  EXPECT_THAT(run({"--probe"}), HasSubstr("      built-in: yes\n"));
  EXPECT_THAT(run({"--probe"}), HasSubstr("      keys:    pass through to macOS\n"));
  prints(FinishedProcess{0, wholeMapping()});
  EXPECT_THAT(run({"--probe"}), HasSubstr("      keys:    driven by Brivane (DisplayServices)\n"));
}

TEST_F(ProbeModeTest, WithoutDisplayServicesTheSystemDrivesTheBuiltInPanel) {
  machine.displaySystem.add({1, 1552, 1, 0, true}, "Built-in");
  EXPECT_THAT(run({"--probe"}), HasSubstr("      control: macOS native (built-in panel)\n\n"));
}

TEST_F(ProbeModeTest, WithAnotherInstanceRunningTheNoteComesFirstAndTheReportFollows) {
  machine.apps.running["com.quorrel.brivane"] = {machine.apps.ownID, 4711, 4712};
  const auto report = lines({"--probe"});
  ASSERT_GT(report.size(), 7u);
  EXPECT_EQ(report[1], "  NOTE: Brivane is already running (pid 4711).");
  EXPECT_EQ(report[2], "        It holds the DDC handles, so a display it is driving may still");
  EXPECT_EQ(report[3], "        report no response below. For a clean reading, quit it first:");
  EXPECT_EQ(report[4], "        launchctl bootout gui/$(id -u)/com.quorrel.brivane");
  EXPECT_EQ(report[5], "");
  EXPECT_EQ(report[6], "  DDC transport available: no");
}

TEST_F(ProbeModeTest, ASwitchedOffRelayStillShowsWhetherAMappingIsInForce) {
  machine.settings.values["SystemBrightnessKeysEnabled"] = {false};
  EXPECT_THAT(
      run({"--probe"}),
      HasSubstr("  System brightness keys: disabled — mapping NOT in force via F19/F20\n\n"));
  prints(FinishedProcess{0, wholeMapping()});
  EXPECT_THAT(run({"--probe"}),
              HasSubstr("  System brightness keys: disabled — mapping in force via F19/F20\n\n"));
}

TEST_F(ProbeModeTest, TheConfiguredRelayKeysAreNamed) {
  machine.settings.values["BrightnessKeyRelayUp"] = {std::int64_t{105}};
  EXPECT_THAT(run({"--probe"}), HasSubstr("via F13/F20\n"));
  prints(FinishedProcess{0, wholeMapping()});
  EXPECT_THAT(run({"--probe"}), HasSubstr("mapping NOT in force via F13/F20\n"));
  machine.settings.values.clear();
  EXPECT_THAT(run({"--probe"}), HasSubstr("mapping in force via F19/F20\n"));
}

TEST_F(ProbeModeTest, ProbeTakesPrecedenceOverSetWhateverTheOrderOfTheSwitches) {
  auto& monitor = machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  for (const auto& arguments : std::vector<std::vector<std::string>>{{"--set", "40", "--probe"},
                                                                     {"--probe", "--set", "40"}}) {
    EXPECT_THAT(run(arguments), testing::StartsWith("Brivane probe\n"));
  }
  EXPECT_EQ(monitor.setCount, 0);
}

TEST_F(ProbeModeTest, OutsideABundleNoOtherInstanceIsNoted) {
  machine.apps.bundle.reset();
  machine.apps.running[""] = {4711};
  EXPECT_THAT(run({"--probe"}), Not(HasSubstr("NOTE")));
}

TEST_F(ProbeModeTest, APointerOffEveryScreenIsReported) {
  machine.addMonitor(2, "Studio Wide", "disp0", 1, 2, 3);
  machine.displaySystem.pointer = {-1, -1};
  EXPECT_THAT(run({"--probe"}), HasSubstr("\n\n  Cursor display could not be determined.\n"));
}

TEST_F(ProbeModeTest, DisplaysAreInTheOrderOfTheWindowSystem) {
  machine.addMonitor(7, "Beta", "disp0", 1, 2, 3);
  machine.addMonitor(2, "Alpha", "disp1", 1, 2, 4);
  const std::string report = run({"--probe"});
  EXPECT_LT(report.find("[7] Beta"), report.find("[2] Alpha"));
  EXPECT_NE(report.find("[2] Alpha"), std::string::npos);
}

// What makes a mode

TEST_F(CommandLineModesTest, TheFirstArgumentMayBeASwitchToo) {
  EXPECT_EQ(runBrivane({"--unmap"}, machine, openFrame, out, err), 0);
  EXPECT_THAT(out.str(), HasSubstr("nothing to clear"));
}

TEST_F(CommandLineModesTest, TheMachinesAdviceIsAskedForLastAndIsAllThatStandsOnStandardError) {
  /// Has advice only after displays or processes were asked for.
  struct AdvisingMachine : FakeMachine {
    DisplaySystem& displays() override {
      wasAsked = true;
      return FakeMachine::displays();
    }
    ProcessRunner& processes() override {
      wasAsked = true;
      return FakeMachine::processes();
    }
    std::optional<std::string> advice() override {
      return wasAsked ? std::optional("Load the driver.") : std::nullopt;
    }
    bool wasAsked = false;
  };
  for (const auto* mode : {"--unmap", "--probe", "--set"}) {
    AdvisingMachine advising;
    out.str("");
    err.str("");
    EXPECT_EQ(runBrivane({"Brivane", mode, "40"}, advising, openFrame, out, err), 0);
    EXPECT_EQ(err.str(), "Load the driver.\n") << mode;
    EXPECT_THAT(out.str(), testing::Not(HasSubstr("Load"))) << mode;
  }
}

TEST_F(CommandLineModesTest, TheMachineLearnsOfEachCommandOfTheMacThatAReportNames) {
  struct NotingMachine : FakeMachine {
    void noteMacCommand(std::string_view line) override { commands.emplace_back(line); }
    std::vector<std::string> commands;
  };
  const auto noted = [&](const std::string& mode, NotingMachine& noting) {
    noting.processRunner.results = {FinishedProcess{0, "(null)\n"}};
    runBrivane({"Brivane", mode}, noting, openFrame, out, err);
    return noting.commands;
  };
  NotingMachine alone;
  EXPECT_THAT(noted("--unmap", alone),
              ElementsAre("  defaults write com.quorrel.brivane SystemBrightnessKeysEnabled -bool "
                          "false"));
  NotingMachine second;
  EXPECT_THAT(noted("--probe", second), IsEmpty());
  second.apps.running["com.quorrel.brivane"] = {4711};
  EXPECT_THAT(noted("--probe", second),
              ElementsAre("        launchctl bootout gui/$(id -u)/com.quorrel.brivane"));
}

TEST_F(CommandLineModesTest, OnlyExactSwitchesCount) {
  for (const auto* argument : {"--Probe", "-probe", "--probe=1", "probe", "--settings"}) {
    runBrivane({"/Applications/Brivane", argument}, machine, openFrame, out, err);
    EXPECT_EQ(out.str(), "") << argument;
  }
  EXPECT_EQ(framesOpened, 5);
}

TEST_F(CommandLineModesTest, CommandsMakeNoObjectOfTheResidentProgram) {
  machine.noteEverything();
  for (const auto* mode : {"--unmap", "--probe", "--set"}) run({mode});
  EXPECT_EQ(framesOpened, 0);
  EXPECT_FALSE(machine.apps.isAnnounced);
  EXPECT_THAT(machine.notes.take(), testing::Each(HasSubstr("run /usr/bin/hidutil --get")));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
