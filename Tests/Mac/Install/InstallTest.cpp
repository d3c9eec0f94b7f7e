// What install.sh does on a Mac, with stand-ins for its tools that write down how they are called.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct InstallTest : testing::Test {
  const PlayedMac mac;
};

TEST_F(InstallTest, PutsTheAppIntoPlaceAndHasItStartAtLogin) {
  const auto result = mac.run("install.sh");
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
  EXPECT_EQ(TemporaryFolder::read(mac.agent()),
            PlayedMac::agentFor((mac.app() / "Contents/MacOS/Brivane").string(), "agents app"));
  EXPECT_TRUE(mac.has("loaded"));
  const std::string fresh = (mac.home() / "Applications/.Brivane.new/Brivane.app").string();
  EXPECT_THAT(
      mac.calls(),
      ElementsAre("codesign --verify --strict " + (mac.package() / "Brivane.app").string(),
                  "ditto " + (mac.package() / "Brivane.app").string() + " " + fresh,
                  "xattr -dr com.apple.quarantine " + fresh, "codesign --verify --strict " + fresh,
                  "plutil -lint -s " + mac.agent().string() + ".new", "pgrep -u 501 -x Brivane",
                  "launchctl bootout gui/501/com.quorrel.brivane", "pgrep -u 501 -x Brivane",
                  "pgrep -u 501 -x Brivane", "launchctl enable gui/501/com.quorrel.brivane",
                  "launchctl bootstrap gui/501 " + mac.agent().string()));
}

TEST_F(InstallTest, GoesIntoTheFolderForAllWhereThatMayBeWritten) {
  mac.letApplicationsBeWritten(true);
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_EQ(mac.found(), mac.foundWith(mac.applications()));
  EXPECT_EQ(TemporaryFolder::read(mac.agent()),
            PlayedMac::agentFor(
                (mac.applications() / "Brivane.app/Contents/MacOS/Brivane").string(), "agents"));
}

TEST_F(InstallTest, GoesIntoTheHomeFolderOnlyWhereNoFolderWasNamed) {
  const auto result = mac.run("install.sh", "'" + mac.applications().string() + "'");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "You may not write into " + mac.applications().string() +
                               ". Name another: ./install.sh FOLDER\n");
  EXPECT_THAT(mac.found(), IsEmpty());
}

TEST_F(InstallTest, SaysWhatToGrantAndWhere) {
  EXPECT_THAT(mac.run("install.sh").output,
              HasSubstr("System Settings > Privacy & Security > Accessibility: switch on Brivane"));
}

TEST_F(InstallTest, CanBeRunTwice) {
  mac.run("install.sh");
  const auto found = mac.found();
  const std::string written = TemporaryFolder::read(mac.agent());
  mac.calls();
  const auto again = mac.run("install.sh");
  EXPECT_EQ(again.status, 0) << again.output;
  EXPECT_EQ(mac.found(), found);
  EXPECT_EQ(TemporaryFolder::read(mac.agent()), written);
  EXPECT_TRUE(mac.has("loaded"));
  EXPECT_THAT(mac.calls(), Not(Contains("tccutil reset Accessibility com.quorrel.brivane")));
}

TEST_F(InstallTest, AnUpdateLeavesNothingOfTheOldApp) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  std::ofstream(mac.app() / "Contents/old") << "x";
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
  EXPECT_EQ(PlayedMac::version(mac.app()), "new");
}

TEST_F(InstallTest, AnUpdateTakesTheVoidGrantBackSoThatItsSwitchIsRight) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  mac.run("install.sh");
  EXPECT_THAT(mac.calls(), Contains("tccutil reset Accessibility com.quorrel.brivane"));
}

TEST_F(InstallTest, AnUpdateWithTheSameCertificateKeepsTheGrant) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  for (const auto& app : {mac.app(), mac.package() / "Brivane.app"}) {
    std::ofstream(app / "certificate")
        << "identifier \"com.quorrel.brivane\" and anchor apple generic";
  }
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_EQ(PlayedMac::version(mac.app()), "new");
  EXPECT_THAT(mac.calls(), Not(Contains("tccutil reset Accessibility com.quorrel.brivane")));
}

TEST_F(InstallTest, AnUpdateWithAnotherCertificateTakesTheGrantBack) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  std::ofstream(mac.app() / "certificate") << "certificate leaf = H\"1\"";
  std::ofstream(mac.package() / "Brivane.app/certificate") << "certificate leaf = H\"2\"";
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_THAT(mac.calls(), Contains("tccutil reset Accessibility com.quorrel.brivane"));
}

TEST_F(InstallTest, TheProgramRunsUntilTheNewOneIsReady) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  mac.run("install.sh");
  const auto called = mac.calls();
  const auto ended = std::ranges::find(called, "launchctl bootout gui/501/com.quorrel.brivane");
  const auto verified = std::ranges::find_if(called, [](const auto& call) {
    return call.starts_with("codesign ") && call.ends_with("/.Brivane.new/Brivane.app");
  });
  EXPECT_LT(verified - called.begin(), ended - called.begin());
}

TEST_F(InstallTest, AProgramThatWasStartedByHandEndsToo) {
  mac.set("running");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_THAT(mac.calls(), Contains("pkill -u 501 -x Brivane"));
}

TEST_F(InstallTest, InstallsFromATerminalThatIsTranslatedFromIntelsProcessors) {
  mac.set("machine", "Darwin x86_64\n");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(mac.app() / "Contents/MacOS/Brivane"));
}

TEST_F(InstallTest, TakesTheAppThatWasBuiltInTheTree) {
  std::filesystem::create_directories(mac.package() / "build/mac");
  std::filesystem::rename(mac.package() / "Brivane.app", mac.package() / "build/mac/Brivane.app");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(mac.app()));
}

TEST_F(InstallTest, AnAgentThatIsStillOnItsWayOutIsWaitedFor) {
  mac.set("leaving");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_TRUE(mac.has("loaded"));
}

TEST_F(InstallTest, AProgramThatTakesAMomentToStartIsStartedOnce) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  mac.set("slow");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  const auto called = mac.calls();
  EXPECT_EQ(std::ranges::count(called, "launchctl bootstrap gui/501 " + mac.agent().string()), 1);
  EXPECT_THAT(called, Not(Contains("open -g -b com.quorrel.brivane")));
}

TEST_F(InstallTest, StartsAtLoginEvenIfThatWasSwitchedOff) {
  mac.set("disabled");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_FALSE(mac.has("disabled"));
  EXPECT_TRUE(mac.has("loaded"));
}

TEST_F(InstallTest, AFolderMayHaveAnyName) {
  const std::filesystem::path there = mac.home() / "Tom & Ann's <new> $HOME";
  const std::string quoted = "\"" + mac.home().string() + "/Tom & Ann's <new> \\$HOME\"";
  EXPECT_EQ(mac.run("install.sh", quoted).status, 0);
  EXPECT_THAT(TemporaryFolder::read(mac.agent()),
              HasSubstr("/Tom &amp; Ann's &lt;new&gt; $HOME/Brivane.app/"));
  EXPECT_TRUE(std::filesystem::exists(there / "Brivane.app/Contents/MacOS/Brivane"));
  EXPECT_EQ(mac.run("uninstall.sh").status, 0);
  EXPECT_FALSE(std::filesystem::exists(there / "Brivane.app"));
}

TEST_F(InstallTest, InstallingElsewhereTakesTheEarlierCopyAndItsFolderAway) {
  mac.run("install.sh");
  EXPECT_EQ(mac.run("install.sh", "'" + (mac.home() / "Elsewhere").string() + "'").status, 0);
  EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Elsewhere"));
  EXPECT_THAT(TemporaryFolder::read(mac.agent()),
              HasSubstr("/home/Elsewhere/Brivane.app/Contents/MacOS/Brivane<"));
  mac.run("uninstall.sh");
  EXPECT_THAT(mac.found(), IsEmpty());
}

TEST_F(InstallTest, SaysThatAnEarlierCopyElsewhereCanNotBeDeleted) {
  mac.run("install.sh");
  mac.refuse("rm -rf */home/Applications/Brivane.app");
  const auto result = mac.run("install.sh", "'" + (mac.home() / "Elsewhere").string() + "'");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output,
              HasSubstr(mac.app().string() + " is of no use now and can't be deleted. "));
  EXPECT_TRUE(mac.has("running"));
}

TEST_F(InstallTest, SaysThatTheOldAppCanNotBeDeletedAndTheNextTimeItIs) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  mac.refuse("rm -rf */.Brivane.app.old");
  const auto result = mac.run("install.sh");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output,
              HasSubstr("/.Brivane.app.old is of no use now and can't be deleted. "));
  EXPECT_EQ(PlayedMac::version(mac.app()), "new");
  mac.forget("refused");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
}

TEST_F(InstallTest, TheAppThatIsInstalledFromStaysWhereItIs) {
  mac.run("install.sh", "'" + mac.package().string() + "'");
  EXPECT_EQ(mac.run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(mac.package() / "Brivane.app/Contents/MacOS/Brivane"));
}

TEST_F(InstallTest, TellsHowItIsUsed) {
  EXPECT_THAT(mac.run("install.sh", "--help").output, HasSubstr("./install.sh [FOLDER]"));
  EXPECT_EQ(mac.run("install.sh", "--what").status, 2);
  EXPECT_THAT(mac.found(), IsEmpty());
}

}  // namespace
}  // namespace brivane
