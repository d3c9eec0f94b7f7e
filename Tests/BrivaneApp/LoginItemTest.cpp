#include <gmock/gmock.h>

#include "BrivaneApp/LoginItem.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct LoginItemTest : testing::Test {
  void install() { machine.userSession.files[FakeSession::launchAgentFile] = 0; }
  void toolPrints(const std::string& text, int status = 0) {
    machine.processRunner.results = {FinishedProcess{status, text}};
  }

  FakeMachine machine;
  LoginItem item{machine};
  std::vector<std::vector<std::string>>& runs = machine.processRunner.runs;
  std::vector<std::string>& logLines = machine.systemLog.lines;
};

TEST_F(LoginItemTest, WithoutTheAgentFileLaunchAtLoginIsOffAndTheToolIsNotRun) {
  EXPECT_FALSE(item.isEnabled());
  EXPECT_THAT(runs, IsEmpty());
  EXPECT_THAT(logLines, IsEmpty());
}

TEST_F(LoginItemTest, WithoutTheAgentFileSwitchingOnOrOffOnlyLogsTheInstallHint) {
  item.setEnabled(true);
  item.setEnabled(false);
  constexpr auto hint =
      "Brivane: no LaunchAgent installed; run ./install.sh to enable launch at login.";
  EXPECT_THAT(logLines, ElementsAre(hint, hint));
  EXPECT_THAT(runs, IsEmpty());
}

TEST_F(LoginItemTest, SwitchingOnEnablesTheAgentAndLoadsItAtOnce) {
  install();
  machine.userSession.user = 1234;
  toolPrints("", 5);
  item.setEnabled(true);
  EXPECT_THAT(runs,
              ElementsAre(ElementsAre("/bin/launchctl", "enable", "gui/1234/com.quorrel.brivane"),
                          ElementsAre("/bin/launchctl", "bootstrap", "gui/1234",
                                      FakeSession::launchAgentFile)));
  EXPECT_THAT(logLines, IsEmpty());
}

TEST_F(LoginItemTest, SwitchingOffDisablesTheAgentAndNothingElse) {
  install();
  toolPrints("");
  item.setEnabled(false);
  EXPECT_THAT(runs,
              ElementsAre(ElementsAre("/bin/launchctl", "disable", "gui/501/com.quorrel.brivane")));
}

TEST_F(LoginItemTest, TheToolIsAskedForTheUsersDisabledAgents) {
  install();
  toolPrints("");
  item.isEnabled();
  EXPECT_THAT(runs, ElementsAre(ElementsAre("/bin/launchctl", "print-disabled", "gui/501")));
}

TEST_F(LoginItemTest, TheFirstLineWithTheAgentsLabelDecidesAndNoSuchLineMeansOn) {
  install();
  struct Case {
    std::string printed;
    bool isEnabled;
  };
  for (const auto& [printed, isEnabled] : std::vector<Case>{
           {"", true},
           {"disabled services = {\n\t\"com.other.agent\" => true\n}\n", true},
           {"\t\"com.quorrel.brivane\" => true\n", false},
           {"\t\"com.quorrel.brivane\" => disabled\n", false},
           {"\t\"com.quorrel.brivane\" => false\n", true},
           {"\t\"com.quorrel.brivane\" => enabled\n", true},
           {"\t\"com.quorrel.brivane\" => disabled", false},
           {"\"com.quorrel.brivane\" => false\n\"com.quorrel.brivane\" => true\n", true},
           {"\"com.quorrel.brivane\" => true\n\"com.quorrel.brivane\" => false\n", false},
           {"\"com.other\" => disabled\n\"com.quorrel.brivane\" => enabled\n", true},
           {"\"com.quorrel.brivane.helper\" => true\n\"com.quorrel.brivane\" => false\n", false},
           {"disabled services = {\"com.quorrel.brivane\" => false}\n", false},
       }) {
    toolPrints(printed);
    EXPECT_EQ(item.isEnabled(), isEnabled) << printed;
  }
}

TEST_F(LoginItemTest, TheToolsOutputCountsWhateverItsStatus) {
  install();
  toolPrints("\"com.quorrel.brivane\" => disabled\n", 113);
  EXPECT_FALSE(item.isEnabled());
  for (const auto* printed : {"\"com.quorrel.brivane\" => enabled\n", ""}) {
    toolPrints(printed, 113);
    EXPECT_TRUE(item.isEnabled()) << printed;
  }
  EXPECT_THAT(logLines, IsEmpty());
}

TEST_F(LoginItemTest, AToolThatCannotBeStartedIsLoggedWithItsFirstArgument) {
  install();
  machine.processRunner.results = {ProcessNotStarted{"No such file or directory"}};
  EXPECT_TRUE(item.isEnabled());
  item.setEnabled(true);
  EXPECT_THAT(logLines,
              ElementsAre("Brivane: launchctl print-disabled failed: No such file or directory",
                          "Brivane: launchctl enable failed: No such file or directory",
                          "Brivane: launchctl bootstrap failed: No such file or directory"));
}

TEST_F(LoginItemTest, TheToolGivesItsStatusAndItsOutputAsText) {
  toolPrints("gut – ja\n", 3);
  EXPECT_EQ(item.launchctl({"list"}), (LoginItem::Outcome{3, "gut – ja\n"}));
  toolPrints("\xFF\xFE", 0);
  EXPECT_EQ(item.launchctl({"list"}), (LoginItem::Outcome{0, ""}));
  machine.processRunner.results = {ProcessNotStarted{"no"}};
  EXPECT_EQ(item.launchctl({"list"}), (LoginItem::Outcome{-1, ""}));
}

}  // namespace
}  // namespace brivane
