// What a programFile on the desk finds beside the hardware: its session, its resources, other
// programs and their settings, the launch agent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/Machine/Processes.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto programFile = "/Applications/Brivane.app/Contents/MacOS/Brivane";
constexpr auto deskAgentFile = "/Users/desk/Library/LaunchAgents/com.quorrel.brivane.plist";
constexpr auto agent = "gui/501/com.quorrel.brivane";

// Session

TEST(DeskSession, IsThatOfAnOrdinaryUserWithTheProgramInItsUsualPlace) {
  TestDesk desk("{}");
  Session& session = desk.machine->session();
  EXPECT_EQ(session.userID(), 501u);
  EXPECT_EQ(session.homeFolder(), "/Users/desk");
  EXPECT_EQ(session.executablePath(), programFile);
  EXPECT_THAT(session.arguments(), ElementsAre(programFile));
  EXPECT_TRUE(session.fileExists(programFile));
  EXPECT_EQ(session.modificationSeconds(programFile), 1.7e9);
  EXPECT_FALSE(session.fileExists(deskAgentFile));
  EXPECT_EQ(session.modificationSeconds("/etc/passwd"), std::nullopt)
      << "nothing of the real machine is seen";
}

TEST(DeskSession, IsWhatTheDeskFileSaysOfTheProgram) {
  TestDesk bare(R"({"program": {"executable": null, "modified": null}})");
  EXPECT_EQ(bare.machine->session().executablePath(), std::nullopt);
  EXPECT_THAT(bare.machine->session().arguments(), ElementsAre("Brivane"));
  EXPECT_FALSE(bare.machine->session().fileExists(programFile));
  TestDesk desk(R"({"program": {"executable": "/x/y", "modified": 12.5, "arguments": []},
                    "launchAgent": {"installed": true}})");
  EXPECT_EQ(desk.machine->session().modificationSeconds("/x/y"), 12.5);
  EXPECT_THAT(desk.machine->session().arguments(), IsEmpty());
  EXPECT_TRUE(desk.machine->session().fileExists(deskAgentFile));
}

TEST(DeskSession, KeepsWhatWasOpened) {
  TestDesk desk("{}");
  desk.machine->session().openURL("one:");
  desk.machine->session().openURL("two:");
  EXPECT_THAT(desk.machine->session().openedURLs(), ElementsAre("one:", "two:"));
}

// Resources

class DeskResourcesTest : public testing::Test {
 protected:
  static void fill(const TestDesk& desk) {
    for (const auto* bundle : {"A.bundle", "B.bundle"}) {
      std::filesystem::create_directories(desk.bundles / bundle / "de.lproj");
      desk.bundles.write(std::string(bundle) + "/de.lproj/Localizable.strings", "text");
      desk.bundles.write(std::string(bundle) + "/file", std::string("a\0b", 3));
    }
  }
};

TEST_F(DeskResourcesTest, AreReadByteForByteFromTheirFolder) {
  TestDesk desk("{}");
  fill(desk);
  Resources& resources = desk.machine->resources();
  EXPECT_EQ(resources.read("A.bundle", "file"), std::string("a\0b", 3));
  EXPECT_EQ(resources.read("B.bundle", "de.lproj/Localizable.strings"), "text");
  EXPECT_EQ(resources.read("A.bundle", "fr.lproj/Localizable.strings"), std::nullopt);
  EXPECT_EQ(resources.read("C.bundle", "file"), std::nullopt);
  EXPECT_EQ(resources.read("A.bundle", "de.lproj"), std::nullopt) << "a folder is no file";
}

TEST_F(DeskResourcesTest, CanBeMissingByBundleAndByFile) {
  TestDesk desk(R"({"missingResources": ["A.bundle", "B.bundle/de.lproj/Localizable.strings"]})");
  fill(desk);
  Resources& resources = desk.machine->resources();
  EXPECT_EQ(resources.read("A.bundle", "file"), std::nullopt);
  EXPECT_EQ(resources.read("B.bundle", "de.lproj/Localizable.strings"), std::nullopt);
  EXPECT_TRUE(resources.read("B.bundle", "file").has_value());
}

TEST_F(DeskResourcesTest, ComeInTheDesksLanguage) {
  EXPECT_THAT(TestDesk("{}").machine->resources().preferredLanguages(), ElementsAre("en"));
  EXPECT_THAT(TestDesk(R"({"language": "zh-Hans"})").machine->resources().preferredLanguages(),
              ElementsAre("zh-Hans"));
}

// Settings of another application

TEST(DeskDefaultsSuite, HoldsWhatTheEarlierApplicationStored) {
  TestDesk desk(R"({"defaults": {"com.quorrel.tallowin": {"a": 1, "b": "x"}}})");
  const auto suite = desk.machine->openDefaultsSuite("com.quorrel.tallowin");
  EXPECT_EQ(suite->persistentDomain("com.quorrel.tallowin"),
            (PropertyValue::Dictionary{{"a", {std::int64_t{1}}}, {"b", {std::string("x")}}}));
}

TEST(DeskDefaultsSuite, HasNothingOfAnApplicationThatWasNeverUsed) {
  TestDesk desk("{}");
  const auto suite = desk.machine->openDefaultsSuite("com.quorrel.tallowin");
  EXPECT_EQ(suite->persistentDomain("com.quorrel.tallowin"), std::nullopt);
}

TEST(DeskDefaultsSuite, IsRefusedForTheProgramsOwnName) {
  EXPECT_EQ(TestDesk("{}").machine->openDefaultsSuite("com.quorrel.brivane"), nullptr);
}

// Programs

TEST(DeskApplications, ProgramsOnOneDeskSeeWhichOfThemAreAnnouncedUntilTheyEnd) {
  TestDesk desk(R"({"applications": [{"bundleIdentifier": "com.quorrel.brivane"}]})");
  auto other = desk.makeMachine();
  const auto running = [](DeskMachine& machine) {
    return machine.applications().runningApplications("com.quorrel.brivane");
  };
  EXPECT_TRUE(desk.machine->applications().announce());
  EXPECT_TRUE(desk.machine->applications().announce());
  EXPECT_THAT(running(*other), ElementsAre(1001, 501));
  EXPECT_TRUE(other->applications().announce());
  EXPECT_THAT(running(*desk.machine), ElementsAre(1001, 501, 502));
  other->kill();
  EXPECT_THAT(running(*desk.machine), ElementsAre(1001, 501));
  EXPECT_THAT(desk.machine->applications().runningApplications("org.example.other"), IsEmpty());
}

// launchctl

class LaunchControlTest : public testing::Test {
 protected:
  static FinishedProcess run(const TestDesk& desk, const std::vector<std::string>& arguments) {
    return std::get<FinishedProcess>(desk.machine->processes().run("/bin/launchctl", arguments));
  }
  static std::string disabled(const TestDesk& desk) {
    return run(desk, {"print-disabled", "gui/501"}).output;
  }

  TestDesk desk{R"({"launchAgent": {"installed": true}})"};
};

TEST_F(LaunchControlTest, ListsTheAgentOnceItWasEnabledOrDisabled) {
  EXPECT_EQ(disabled(desk), "disabled services = {\n}\n");
  EXPECT_EQ(run(desk, {"disable", agent}), (FinishedProcess{0, ""}));
  EXPECT_EQ(disabled(desk), "disabled services = {\n\t\"com.quorrel.brivane\" => disabled\n}\n");
  EXPECT_EQ(run(desk, {"enable", agent}), (FinishedProcess{0, ""}));
  EXPECT_EQ(disabled(desk), "disabled services = {\n\t\"com.quorrel.brivane\" => enabled\n}\n");
}

TEST_F(LaunchControlTest, StartsFromWhatTheDeskFileSays) {
  TestDesk off(R"({"launchAgent": {"installed": true, "enabled": false}})");
  EXPECT_EQ(disabled(off), "disabled services = {\n\t\"com.quorrel.brivane\" => disabled\n}\n");
}

TEST_F(LaunchControlTest, LoadsOnlyAnAgentThatIsThereAndNotDisabled) {
  EXPECT_EQ(run(desk, {"bootstrap", "gui/501", deskAgentFile}).exitStatus, 0);
  EXPECT_EQ(run(desk, {"bootstrap", "gui/501", "/no/such/file"}).exitStatus, 5);
  run(desk, {"disable", agent});
  EXPECT_EQ(run(desk, {"bootstrap", "gui/501", deskAgentFile}).exitStatus, 5);
  EXPECT_EQ(run(TestDesk("{}"), {"bootstrap", "gui/501", deskAgentFile}).exitStatus, 5);
}

TEST_F(LaunchControlTest, RefusesWhatItDoesNotKnow) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"print-disabled"},
                                                    {"print-disabled", "gui/502"},
                                                    {"enable", "gui/501"},
                                                    {"disable", "gui/502/com.quorrel.brivane"},
                                                    {"load", "gui/501"},
                                                    {"bootstrap", "gui/501"},
                                                    {"enable", agent, "more"}}) {
    EXPECT_EQ(run(desk, arguments), (FinishedProcess{64, ""}));
  }
  EXPECT_EQ(disabled(desk), "disabled services = {\n}\n");
}

TEST_F(LaunchControlTest, CanBeMissingOrRefuseEverything) {
  TestDesk missing(R"({"launchctl": "missing"})");
  EXPECT_TRUE(std::holds_alternative<ProcessNotStarted>(
      missing.machine->processes().run("/bin/launchctl", {"print-disabled", "gui/501"})));
  TestDesk refusing(R"({"launchctl": "refusing"})");
  EXPECT_EQ(run(refusing, {"print-disabled", "gui/501"}), (FinishedProcess{1, ""}));
}

TEST_F(LaunchControlTest, IsRememberedForOtherProcesses) {
  TemporaryFolder folder;
  const std::string text = R"({"launchAgent": {"installed": true}})";
  FolderDesk one(text, folder / "state");
  FolderDesk two(text, folder / "state");
  Faults noFaults{{}};
  VirtualRuntime runtime;
  DeskProcesses(one.hardware, noFaults, runtime).run("/bin/launchctl", {"disable", agent});
  EXPECT_EQ(two.hardware.system.launchState(), LaunchState{false});
  FolderDesk edited(R"({"launchAgent": {"installed": false}})", folder / "state");
  EXPECT_EQ(edited.hardware.system.launchState(), LaunchState{})
      << "an edited section starts afresh";
}

}  // namespace
}  // namespace brivane
