// Whatever keeps install.sh from its work is said in one line, and leaves what was there: nothing,
// or an earlier Brivane that runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

using testing::IsEmpty;

struct Failure {
  const char* name;
  std::function<void(const PlayedMac&)> arrange;
  /// HOME and PACKAGE stand for those of the Mac.
  std::string line;
};

const std::string appManagement =
    "Allow this terminal in System Settings > Privacy & Security > App Management";

std::string replaced(std::string text, const std::string& word, const std::string& by) {
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
    text.replace(at, word.size(), by);
  }
  return text;
}

void forbidWriting(const std::filesystem::path& folder) {
  std::filesystem::permissions(folder, std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::remove);
}

const Failure everyTime[] = {
    {"Root", [](const auto& mac) { mac.set("user", "0\n"); },
     "Run it as yourself, without sudo: the launch agent is yours."},
    {"OtherProcessors",
     [](const auto& mac) {
       mac.set("machine", "Darwin x86_64\n");
       mac.forget("arm64");
     },
     "Brivane needs a Mac with Apple silicon."},
    {"OtherSystems", [](const auto& mac) { mac.set("machine", "Linux aarch64\n"); },
     "Brivane needs a Mac with Apple silicon."},
    {"OlderSystems", [](const auto& mac) { mac.set("system", "12.7.6\n"); },
     "Brivane needs macOS 13 or later; this is macOS 12.7.6."},
    {"NoApp", [](const auto& mac) { std::filesystem::remove_all(mac.package() / "Brivane.app"); },
     "There is no Brivane.app beside install.sh. docs/macos.md says how to build it."},
    {"DamagedApp", [](const auto& mac) { mac.refuse("codesign */package/Brivane.app"); },
     "PACKAGE/Brivane.app isn't whole. Unpack or build it again."},
    {"CopyFails", [](const auto& mac) { mac.refuse("ditto *"); },
     "Brivane.app can't be copied into HOME/Applications (Operation not permitted). Help that, "
     "then run install.sh again."},
    {"DamagedCopy", [](const auto& mac) { mac.refuse("codesign */.Brivane.new/Brivane.app"); },
     "The copy of Brivane.app in HOME/Applications isn't whole. See whether the disk is full, then "
     "run install.sh again."},
    {"AgentNotWhole", [](const auto& mac) { mac.refuse("plutil *"); },
     "The launch agent can't be written into HOME/Library/LaunchAgents. See whether the disk is "
     "full, then run install.sh again."},
    {"ProgramThatDoesNotEnd",
     [](const auto& mac) {
       mac.set("running");
       mac.set("stubborn");
     },
     "Brivane is still running and doesn't end. Quit it from its menu, then run install.sh again."},
    {"NewAppRefused", [](const auto& mac) { mac.refuse("mv */.Brivane.new/Brivane.app *"); },
     "macOS doesn't let HOME/Applications/Brivane.app be replaced (Operation not permitted). " +
         appManagement + ", then run install.sh again."},
};

const Failure whenUpdating[] = {
    {"OldAppRefused", [](const auto& mac) { mac.refuse("mv */Brivane.app */.Brivane.app.old"); },
     "macOS doesn't let HOME/Applications/Brivane.app be replaced (Operation not permitted). " +
         appManagement + ", then run install.sh again."},
    {"LeftoverRefused",
     [](const auto& mac) {
       PlayedMac::makeApp(mac.home() / "Applications/.Brivane.app.old", "com.quorrel.brivane",
                          "older");
       mac.refuse("rm -rf */.Brivane.app.old");
     },
     "HOME/Applications/.Brivane.app.old is of no use and can't be deleted. " + appManagement +
         ", then run install.sh again."},
    {"SomebodyElsesApp",
     [](const auto& mac) { PlayedMac::makeApp(mac.app(), "org.example.brivane", "old"); },
     "HOME/Applications/Brivane.app is somebody else's app. Name another folder: ./install.sh "
     "FOLDER"},
    {"ForbiddenFolder", [](const auto& mac) { forbidWriting(mac.home() / "Applications"); },
     "You may not write into HOME/Applications. Name another: ./install.sh FOLDER"},
    {"ForbiddenAgents", [](const auto& mac) { forbidWriting(mac.home() / "Library/LaunchAgents"); },
     "You may not write into HOME/Library/LaunchAgents. Make it yours (sudo chown \"$USER\" "
     "\"HOME/Library/LaunchAgents\"), then run install.sh again."},
};

const Failure atFirst[] = {
    {"FolderCanNotBeMade", [](const auto& mac) { mac.refuse("mkdir */Applications"); },
     "The folder HOME/Applications can't be made. Name one that is there: ./install.sh FOLDER"},
    {"AgentsCanNotBeMade", [](const auto& mac) { mac.refuse("mkdir */LaunchAgents"); },
     "The folder HOME/Library/LaunchAgents can't be made. Make it, then run install.sh again."},
};

struct InstallFailureTest : testing::TestWithParam<Failure> {
  void expectLine() const {
    const auto result = mac.run("install.sh");
    EXPECT_EQ(result.status, 1);
    const auto line = replaced(GetParam().line, "HOME", mac.home().string());
    EXPECT_EQ(result.output, replaced(line, "PACKAGE", mac.package().string()) + "\n");
  }

  const PlayedMac mac;
};
struct InstallFailureAtFirst : InstallFailureTest {};
struct InstallFailureWhenUpdating : InstallFailureTest {};

/// Also what a failed test prints.
void PrintTo(const Failure& failure, std::ostream* out) {
  *out << failure.name;
}

std::string nameOf(const testing::TestParamInfo<Failure>& parameter) {
  return parameter.param.name;
}

TEST_P(InstallFailureAtFirst, LeavesNothing) {
  GetParam().arrange(mac);
  expectLine();
  EXPECT_THAT(mac.found(), IsEmpty());
  EXPECT_FALSE(mac.has("loaded"));
}

TEST_P(InstallFailureWhenUpdating, LeavesTheOldAppRunning) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  const auto agent = TemporaryFolder::read(mac.agent());
  GetParam().arrange(mac);
  const auto before = mac.found();
  expectLine();
  EXPECT_EQ(mac.found(), before);
  EXPECT_EQ(PlayedMac::version(mac.app()), "old");
  EXPECT_EQ(TemporaryFolder::read(mac.agent()), agent);
  EXPECT_TRUE(mac.has("running"));
}

TEST(InstallFailure, AnOldAppThatAKilledUpdateLeftAsideIsBack) {
  const PlayedMac mac;
  mac.playEarlierInstallation(mac.home() / "Applications");
  std::filesystem::rename(mac.app(), mac.home() / "Applications/.Brivane.app.old");
  mac.refuse("ditto *");
  EXPECT_EQ(mac.run("install.sh").status, 1);
  EXPECT_EQ(PlayedMac::version(mac.app()), "old");
  EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
}

INSTANTIATE_TEST_SUITE_P(EveryTime, InstallFailureAtFirst, testing::ValuesIn(everyTime), nameOf);
INSTANTIATE_TEST_SUITE_P(AtFirst, InstallFailureAtFirst, testing::ValuesIn(atFirst), nameOf);
INSTANTIATE_TEST_SUITE_P(EveryTime, InstallFailureWhenUpdating, testing::ValuesIn(everyTime),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(WhenUpdating, InstallFailureWhenUpdating, testing::ValuesIn(whenUpdating),
                         nameOf);

}  // namespace
}  // namespace brivane
