// install.sh and uninstall.sh in a home folder of their own, with stand-ins for the Mac's tools
// that write down how they are called.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "Machines/Common/ChildProcess.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const std::set<std::string> systemTools = {"codesign", "defaults", "ditto",  "id",    "launchctl",
                                           "pgrep",    "pkill",    "plutil", "sleep", "sw_vers",
                                           "sysctl",   "tccutil",  "uname",  "xattr"};
/// Nothing else that this machine happens to have.
const std::set<std::string> commonTools = {"cat", "cp", "dirname", "grep", "mkdir",
                                           "mv",  "rm", "sed",     "sh",   "touch"};

const std::string agentName = "Library/LaunchAgents/com.quorrel.brivane.plist";

std::string agentFor(const std::string& program) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>Label</key>
  <string>com.quorrel.brivane</string>
  <key>AssociatedBundleIdentifiers</key>
  <string>com.quorrel.brivane</string>
  <key>ProgramArguments</key>
  <array>
    <string>)" +
         program + R"(</string>
  </array>
  <key>RunAtLoad</key>
  <true/>
  <key>KeepAlive</key>
  <dict>
    <key>SuccessfulExit</key>
    <false/>
  </dict>
  <key>LimitLoadToSessionType</key>
  <string>Aqua</string>
  <key>ProcessType</key>
  <string>Interactive</string>
</dict>
</plist>
)";
}

std::vector<std::string> lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> found;
  for (std::string line; std::getline(stream, line);) found.push_back(line);
  return found;
}

struct Result {
  int status = -1;
  /// Of both standard outputs.
  std::string output;
};

struct InstallTest : testing::Test {
  InstallTest() {
    for (const auto* name : {"bin", "home", "state", "package"}) {
      std::filesystem::create_directory(folder / name);
    }
    for (const auto& tool : systemTools) {
      std::filesystem::create_symlink(std::filesystem::absolute("Tests/Install/stand-in"),
                                      folder / "bin" / tool);
    }
    for (const auto& tool : commonTools) {
      std::filesystem::create_symlink("/bin/" + tool, folder / "bin" / tool);
    }
    for (const auto* name : {"install.sh", "uninstall.sh"}) {
      std::filesystem::copy_file(name, package() / name);
    }
    makeApp(package() / "Brivane.app", "com.quorrel.brivane");
    set("user", "501\n");
    set("machine", "Darwin arm64\n");
    set("arm64", "1\n");
    set("system", "13.0\n");
  }

  std::filesystem::path package() const { return folder / "package"; }
  std::filesystem::path home() const { return folder / "home"; }
  std::filesystem::path app() const { return home() / "Applications/Brivane.app"; }
  std::filesystem::path agent() const { return home() / agentName; }

  void makeApp(const std::filesystem::path& path, const std::string& identifier) const {
    std::filesystem::create_directories(path / "Contents/MacOS");
    std::ofstream(path / "Contents/Info.plist")
        << "<key>CFBundleIdentifier</key>\n<string>" << identifier << "</string>\n";
    const auto program = path / "Contents/MacOS/Brivane";
    std::ofstream(program) << "#!/bin/sh\necho \"Brivane $*\" >>\"$STATE/calls\"\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    std::ofstream(path / "quarantine") << "x";
  }

  void set(const std::string& name, const std::string& value = "") const {
    std::ofstream(folder / "state" / name) << value;
  }
  bool has(const std::string& name) const {
    return std::filesystem::exists(folder / "state" / name);
  }

  Result run(const std::string& script, const std::string& arguments = "") const {
    const std::string command = "exec env -i HOME='" + home().string() + "' STATE='" +
                                (folder / "state").string() + "' PATH='" +
                                (folder / "bin").string() + "' /bin/sh '" +
                                (package() / script).string() + "' " + arguments + " 2>&1";
    const auto result = runChildProcess("/bin/sh", {"-c", command});
    const auto& finished = std::get<FinishedProcess>(result);
    return {finished.exitStatus, finished.output};
  }

  /// How the tools were called since the last time.
  std::vector<std::string> calls() const {
    const auto file = folder / "state/calls";
    auto found = lines(TemporaryFolder::read(file));
    std::filesystem::remove(file);
    return found;
  }

  std::set<std::string> filesAtHome() const {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home())) {
      if (!entry.is_directory()) found.insert(relative(entry.path(), home()).string());
    }
    return found;
  }

  void expectRefusal(const std::string& sentence) const {
    const Result result = run("install.sh");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr(sentence));
    EXPECT_THAT(filesAtHome(), IsEmpty());
    EXPECT_FALSE(has("loaded"));
  }

  const TemporaryFolder folder;
};

TEST_F(InstallTest, PutsTheAppIntoPlaceAndHasItStartAtLogin) {
  const Result result = run("install.sh");
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(filesAtHome(),
            (std::set<std::string>{"Applications/Brivane.app/Contents/Info.plist",
                                   "Applications/Brivane.app/Contents/MacOS/Brivane", agentName}));
  EXPECT_EQ(TemporaryFolder::read(agent()), agentFor((app() / "Contents/MacOS/Brivane").string()));
  EXPECT_TRUE(has("loaded"));
  const std::string fresh = (home() / "Applications/.Brivane.app.new").string();
  EXPECT_THAT(calls(),
              ElementsAre("codesign --verify --strict " + (package() / "Brivane.app").string(),
                          "launchctl bootout gui/501/com.quorrel.brivane",
                          "pgrep -u 501 -x Brivane", "pgrep -u 501 -x Brivane",
                          "ditto " + (package() / "Brivane.app").string() + " " + fresh,
                          "xattr -dr com.apple.quarantine " + fresh,
                          "plutil -lint -s " + agent().string() + ".new",
                          "launchctl enable gui/501/com.quorrel.brivane",
                          "launchctl bootstrap gui/501 " + agent().string()));
}

TEST_F(InstallTest, SaysWhatToGrantAndWhere) {
  EXPECT_THAT(run("install.sh").output,
              HasSubstr("System Settings > Privacy & Security > Accessibility: switch on Brivane"));
}

TEST_F(InstallTest, CanBeRunTwice) {
  run("install.sh");
  const auto files = filesAtHome();
  const std::string written = TemporaryFolder::read(agent());
  calls();
  const Result again = run("install.sh");
  EXPECT_EQ(again.status, 0) << again.output;
  EXPECT_EQ(filesAtHome(), files);
  EXPECT_EQ(TemporaryFolder::read(agent()), written);
  EXPECT_TRUE(has("loaded"));
}

TEST_F(InstallTest, AnUpdateLeavesNothingOfTheOldApp) {
  run("install.sh");
  std::ofstream(app() / "Contents/old") << "x";
  run("install.sh");
  EXPECT_FALSE(std::filesystem::exists(app() / "Contents/old"));
}

TEST_F(InstallTest, AProgramThatWasStartedByHandEndsBeforeItIsReplaced) {
  set("running");
  EXPECT_EQ(run("install.sh").status, 0);
  const auto called = calls();
  const auto ended = std::ranges::find(called, "pkill -u 501 -x Brivane");
  const auto copied =
      std::ranges::find_if(called, [](const auto& call) { return call.starts_with("ditto "); });
  EXPECT_LT(ended - called.begin(), copied - called.begin());
}

TEST_F(InstallTest, AProgramThatDoesNotEndIsNotReplaced) {
  set("running");
  set("stubborn");
  expectRefusal("Quit it from its menu, then try again.");
}

TEST_F(InstallTest, RefusesRootWhoseAgentItWouldBe) {
  set("user", "0\n");
  expectRefusal("Run it as yourself, without sudo");
}

TEST_F(InstallTest, RefusesOtherProcessors) {
  set("machine", "Darwin x86_64\n");
  std::filesystem::remove(folder / "state/arm64");
  expectRefusal("Brivane needs a Mac with Apple silicon.");
}

TEST_F(InstallTest, RefusesOtherSystems) {
  set("machine", "Linux aarch64\n");
  expectRefusal("Brivane needs a Mac with Apple silicon.");
}

TEST_F(InstallTest, InstallsFromATerminalThatIsTranslatedFromIntelsProcessors) {
  set("machine", "Darwin x86_64\n");
  EXPECT_EQ(run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(app() / "Contents/MacOS/Brivane"));
}

TEST_F(InstallTest, RefusesOlderSystems) {
  set("system", "12.7.6\n");
  expectRefusal("Brivane needs macOS 13 or later; this is macOS 12.7.6.");
}

TEST_F(InstallTest, RefusesADamagedApp) {
  set("damaged");
  expectRefusal("isn't whole. Unpack or build it again.");
}

TEST_F(InstallTest, SaysWhenThereIsNoAppToInstall) {
  std::filesystem::remove_all(package() / "Brivane.app");
  expectRefusal("There is no Brivane.app beside install.sh.");
}

TEST_F(InstallTest, TakesTheAppThatWasBuiltInTheTree) {
  std::filesystem::create_directories(package() / "build/mac");
  std::filesystem::rename(package() / "Brivane.app", package() / "build/mac/Brivane.app");
  EXPECT_EQ(run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(app()));
}

TEST_F(InstallTest, AnAgentThatIsStillOnItsWayOutIsWaitedFor) {
  set("leaving");
  EXPECT_EQ(run("install.sh").status, 0);
  EXPECT_TRUE(has("loaded"));
}

TEST_F(InstallTest, SaysWhenTheAgentCanNotBeLoaded) {
  set("unloadable");
  const Result result = run("install.sh");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("log in anew, or open " + app().string()));
}

TEST_F(InstallTest, StartsAtLoginEvenIfThatWasSwitchedOff) {
  set("disabled");
  EXPECT_EQ(run("install.sh").status, 0);
  EXPECT_FALSE(has("disabled"));
  EXPECT_TRUE(has("loaded"));
}

TEST_F(InstallTest, AFolderMayHaveAnyName) {
  const std::filesystem::path there = home() / "Tom & Ann's <new> $HOME";
  const std::string quoted = "\"" + home().string() + "/Tom & Ann's <new> \\$HOME\"";
  EXPECT_EQ(run("install.sh", quoted).status, 0);
  EXPECT_THAT(TemporaryFolder::read(agent()),
              HasSubstr("/Tom &amp; Ann's &lt;new&gt; $HOME/Brivane.app/"));
  EXPECT_TRUE(std::filesystem::exists(there / "Brivane.app/Contents/MacOS/Brivane"));
  EXPECT_EQ(run("uninstall.sh").status, 0);
  EXPECT_FALSE(std::filesystem::exists(there / "Brivane.app"));
}

TEST_F(InstallTest, InstallingElsewhereTakesTheEarlierCopyAway) {
  run("install.sh");
  EXPECT_EQ(run("install.sh", "'" + (home() / "Elsewhere").string() + "'").status, 0);
  EXPECT_FALSE(std::filesystem::exists(app()));
  EXPECT_THAT(TemporaryFolder::read(agent()),
              HasSubstr("/home/Elsewhere/Brivane.app/Contents/MacOS/Brivane<"));
}

TEST_F(InstallTest, TheAppThatIsInstalledFromStaysWhereItIs) {
  run("install.sh", "'" + package().string() + "'");
  EXPECT_EQ(run("install.sh").status, 0);
  EXPECT_TRUE(std::filesystem::exists(package() / "Brivane.app/Contents/MacOS/Brivane"));
}

TEST_F(InstallTest, UninstallingLeavesNothing) {
  std::ofstream(home() / "mine") << "x";
  run("install.sh");
  calls();
  const Result result = run("uninstall.sh");
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(filesAtHome(), std::set<std::string>{"mine"});
  EXPECT_FALSE(has("loaded"));
  EXPECT_FALSE(has("running"));
  EXPECT_THAT(calls(), IsSupersetOf({"launchctl bootout gui/501/com.quorrel.brivane",
                                     "tccutil reset Accessibility com.quorrel.brivane"}));
}

TEST_F(InstallTest, UninstallingEndsTheProgramAndThenGivesTheBrightnessKeysBack) {
  run("install.sh");
  calls();
  run("uninstall.sh");
  const auto called = calls();
  ASSERT_THAT(called, testing::Contains("Brivane --unmap"));
  EXPECT_LT(std::ranges::find(called, "launchctl bootout gui/501/com.quorrel.brivane"),
            std::ranges::find(called, "Brivane --unmap"));
}

TEST_F(InstallTest, UninstallingSwitchesNothingOffForTheNextTime) {
  run("install.sh");
  set("disabled");
  run("uninstall.sh");
  EXPECT_FALSE(has("disabled"));
}

TEST_F(InstallTest, SettingsStayUnlessTheyAreToGoToo) {
  run("install.sh");
  calls();
  EXPECT_THAT(run("uninstall.sh").output, HasSubstr("Its settings stay."));
  EXPECT_THAT(calls(), Not(testing::Contains("defaults delete com.quorrel.brivane")));
  EXPECT_EQ(run("uninstall.sh", "--settings").status, 0);
  EXPECT_THAT(calls(), testing::Contains("defaults delete com.quorrel.brivane"));
}

TEST_F(InstallTest, UninstallingTwiceIsNoMistake) {
  run("install.sh");
  run("uninstall.sh");
  EXPECT_EQ(run("uninstall.sh").status, 0);
}

TEST_F(InstallTest, UninstallingLeavesSomebodyElsesAppOfThatNameAlone) {
  makeApp(app(), "org.example.brivane");
  run("uninstall.sh");
  EXPECT_TRUE(std::filesystem::exists(app() / "Contents/MacOS/Brivane"));
}

TEST_F(InstallTest, AProgramThatDoesNotEndIsNotUninstalled) {
  run("install.sh");
  set("stubborn");
  EXPECT_EQ(run("uninstall.sh").status, 1);
  EXPECT_TRUE(std::filesystem::exists(app() / "Contents/MacOS/Brivane"));
  EXPECT_TRUE(std::filesystem::exists(agent()));
}

TEST_F(InstallTest, BothTellHowTheyAreUsed) {
  EXPECT_THAT(run("install.sh", "--help").output, HasSubstr("./install.sh [FOLDER]"));
  EXPECT_THAT(run("uninstall.sh", "--help").output, HasSubstr("./uninstall.sh [--settings]"));
  EXPECT_EQ(run("install.sh", "--what").status, 2);
  EXPECT_EQ(run("uninstall.sh", "what").status, 2);
  EXPECT_THAT(filesAtHome(), IsEmpty());
}

}  // namespace
}  // namespace brivane
