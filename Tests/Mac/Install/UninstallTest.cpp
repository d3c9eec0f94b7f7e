// What uninstall.sh takes away and what it leaves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using Names = std::set<std::string>;

struct UninstallTest : testing::Test {
  /// In one line, after which everything is as it was.
  void expectRefusal(const std::string& line) const {
    const auto before = mac.found();
    const auto result = mac.run("uninstall.sh");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, line + "\n");
    EXPECT_EQ(mac.found(), before);
    EXPECT_TRUE(mac.has("running"));
  }

  const PlayedMac mac;
};

TEST_F(UninstallTest, LeavesNoFileAndNoFolder) {
  std::ofstream(mac.home() / "mine") << "x";
  const std::string states = "home/Library/Saved Application State/";
  const auto windows = mac.home().parent_path() / (states + "com.quorrel.brivane.savedState");
  std::filesystem::create_directories(windows);
  std::ofstream(windows / "windows.plist") << "x";
  mac.run("install.sh");
  mac.calls();
  const auto result = mac.run("uninstall.sh");
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(mac.found(), (Names{"home/mine", states}));
  EXPECT_FALSE(mac.has("loaded"));
  EXPECT_FALSE(mac.has("running"));
  EXPECT_THAT(mac.calls(), IsSupersetOf({"launchctl bootout gui/501/com.quorrel.brivane",
                                         "tccutil reset Accessibility com.quorrel.brivane"}));
}

TEST_F(UninstallTest, LeavesNoFolderAfterUpdatesEither) {
  mac.run("install.sh");
  mac.run("install.sh");
  mac.run("uninstall.sh");
  EXPECT_THAT(mac.found(), IsEmpty());
}

TEST_F(UninstallTest, LeavesAnEmptyFolderThatWasThereBefore) {
  std::filesystem::create_directory(mac.home() / "Library/LaunchAgents");
  std::filesystem::create_directory(mac.home() / "Applications");
  mac.run("install.sh");
  mac.run("install.sh");
  mac.run("uninstall.sh");
  EXPECT_EQ(mac.found(), (Names{"home/Applications/", "home/Library/LaunchAgents/"}));
}

TEST_F(UninstallTest, LeavesAFolderThatHoldsSomethingByNow) {
  mac.run("install.sh");
  std::ofstream(mac.home() / "Applications/mine") << "x";
  std::ofstream(mac.home() / "Library/LaunchAgents/mine") << "x";
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_EQ(mac.found(), (Names{"home/Applications/", "home/Applications/mine",
                                "home/Library/LaunchAgents/", "home/Library/LaunchAgents/mine"}));
}

TEST_F(UninstallTest, TakesTheAppOutOfTheFolderForAll) {
  mac.letApplicationsBeWritten(true);
  mac.run("install.sh");
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_THAT(mac.found(), IsEmpty());
}

TEST_F(UninstallTest, TakesTheAppOutOfTheFolderForAllWhenItsAgentIsGone) {
  mac.letApplicationsBeWritten(true);
  mac.run("install.sh");
  std::filesystem::remove(mac.agent());
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_EQ(mac.found(), Names{"home/Library/LaunchAgents/"});
}

TEST_F(UninstallTest, SaysThatAnAppStaysWhereYouMayNotWrite) {
  mac.letApplicationsBeWritten(true);
  PlayedMac::makeApp(mac.applications() / "Brivane.app", "com.quorrel.brivane", "another's");
  mac.letApplicationsBeWritten(false);
  const auto result = mac.run("uninstall.sh");
  EXPECT_EQ(result.status, 0);
  const std::string app = (mac.applications() / "Brivane.app").string();
  EXPECT_THAT(result.output, HasSubstr(app + " stays, because you may not write into " +
                                       mac.applications().string() + "."));
  EXPECT_EQ(PlayedMac::version(app), "another's");
}

TEST_F(UninstallTest, WithdrawsTheGrantWhileTheAppIsThereToBeFound) {
  mac.run("install.sh");
  mac.refuse("mv */Brivane.app *");
  mac.run("uninstall.sh");
  EXPECT_THAT(mac.calls(), Contains("tccutil reset Accessibility com.quorrel.brivane"));
}

TEST_F(UninstallTest, EndsTheProgramAndThenGivesTheBrightnessKeysBack) {
  mac.run("install.sh");
  mac.calls();
  mac.run("uninstall.sh");
  const auto called = mac.calls();
  ASSERT_THAT(called, Contains("Brivane --unmap"));
  EXPECT_LT(std::ranges::find(called, "launchctl bootout gui/501/com.quorrel.brivane"),
            std::ranges::find(called, "Brivane --unmap"));
}

TEST_F(UninstallTest, SwitchesNothingOffForTheNextTime) {
  mac.run("install.sh");
  mac.set("disabled");
  mac.run("uninstall.sh");
  EXPECT_FALSE(mac.has("disabled"));
}

TEST_F(UninstallTest, SettingsStayUnlessTheyAreToGoToo) {
  mac.run("install.sh");
  mac.calls();
  EXPECT_THAT(mac.run("uninstall.sh").output, HasSubstr("Its settings stay."));
  EXPECT_THAT(mac.calls(), Not(Contains("defaults delete com.quorrel.brivane")));
  EXPECT_EQ(mac.run("uninstall.sh", "--settings").status, 0);
  EXPECT_THAT(mac.calls(), Contains("defaults delete com.quorrel.brivane"));
}

TEST_F(UninstallTest, TwiceIsNoMistake) {
  mac.run("install.sh");
  mac.run("uninstall.sh");
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
}

TEST_F(UninstallTest, LeavesSomebodyElsesAppOfThatNameAlone) {
  PlayedMac::makeApp(mac.app(), "org.example.brivane", "another");
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_EQ(PlayedMac::version(mac.app()), "another");
}

TEST_F(UninstallTest, AProgramThatDoesNotEndStays) {
  mac.run("install.sh");
  mac.set("stubborn");
  expectRefusal(
      "Brivane is still running and doesn't end. Quit it from its menu, then run uninstall.sh "
      "again.");
}

TEST_F(UninstallTest, RefusesRootWhoseAgentItWouldBe) {
  mac.run("install.sh");
  mac.set("user", "0\n");
  expectRefusal("Run it as yourself, without sudo: the launch agent is yours.");
}

TEST_F(UninstallTest, SaysWhichGrantATerminalLacksAndLetsTheProgramGoOn) {
  mac.run("install.sh");
  mac.refuse("mv */Brivane.app *");
  expectRefusal("macOS doesn't let " + mac.app().string() +
                " be deleted. Allow this terminal in System Settings > Privacy & Security > App "
                "Management, then run uninstall.sh again.");
  EXPECT_TRUE(mac.has("loaded"));
}

TEST_F(UninstallTest, AProgramThatWasStartedByHandGoesOnAfterARefusalToo) {
  mac.run("install.sh");
  std::filesystem::remove(mac.agent());
  mac.forget("loaded");
  mac.refuse("mv */Brivane.app *");
  EXPECT_EQ(mac.run("uninstall.sh").status, 1);
  EXPECT_THAT(mac.calls(), Contains("open -g -b com.quorrel.brivane"));
  EXPECT_TRUE(mac.has("running"));
}

TEST_F(UninstallTest, OnceTheGrantIsThereWhatWasLeftGoes) {
  mac.run("install.sh");
  mac.refuse("rm -rf */.Brivane.new *");
  const auto result = mac.run("uninstall.sh");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("/.Brivane.app.old be deleted. Allow this terminal in "));
  EXPECT_FALSE(mac.has("running"));
  mac.forget("refused");
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_THAT(mac.found(), IsEmpty());
}

TEST_F(UninstallTest, TellsHowItIsUsed) {
  EXPECT_THAT(mac.run("uninstall.sh", "--help").output, HasSubstr("./uninstall.sh [--settings]"));
  EXPECT_EQ(mac.run("uninstall.sh", "what").status, 2);
  EXPECT_THAT(mac.found(), IsEmpty());
}

}  // namespace
}  // namespace brivane
