#include <gmock/gmock.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "Machines/Linux/Resources.h"
#include "Machines/Linux/Session.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;

TEST(LinuxSession, HasTheMacsLaunchAgentWhenItsAutostartEntryIsInstalled) {
  const TemporaryFolder folder;
  setenv("HOME", (folder.path.string() + "/").c_str(), 1);
  const AutostartEntry entry({folder / "autostart"});
  LinuxSession session(entry);
  EXPECT_EQ(session.homeFolder(), folder.path.string());
  const auto agent = session.homeFolder() + "/Library/LaunchAgents/com.quorrel.brivane.plist";
  EXPECT_FALSE(session.fileExists(agent));
  std::filesystem::create_directories(folder / "autostart");
  folder.write("autostart/com.quorrel.brivane.desktop", "[Desktop Entry]\n");
  EXPECT_TRUE(session.fileExists(agent));
}

TEST(LinuxSession, HasNoSlashAtTheEndOfAHomeThatIsTheRootAndKnowsTheLaunchAgentThere) {
  setenv("HOME", "/", 1);
  const TemporaryFolder folder;
  folder.write("com.quorrel.brivane.desktop", "[Desktop Entry]\n");
  const AutostartEntry entry({folder.path});
  LinuxSession session(entry);
  EXPECT_EQ(session.homeFolder(), "");
  EXPECT_TRUE(
      session.fileExists(session.homeFolder() + "/Library/LaunchAgents/com.quorrel.brivane.plist"));
}

TEST(LinuxSession, HasAURLOpenedAsItStandsAndDoesNotWaitForWhateverOpensIt) {
  const TemporaryFolder folder;
  const auto opener = folder.write("xdg-open",
                                   "#!/bin/sh\n"
                                   "printf '%s' \"$*\" >\"${0%/*}/part\"\n"
                                   "mv \"${0%/*}/part\" \"${0%/*}/opened\"\n"
                                   "for tenth in $(seq 200); do\n"
                                   "  [ -e \"${0%/*}/opened\" ] || exit\n"
                                   "  sleep 0.1\n"
                                   "done\n");
  std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
  const std::string usual = getenv("PATH");
  setenv("PATH", (folder.path.string() + ":" + usual).c_str(), 1);
  const AutostartEntry entry({});
  const auto begin = std::chrono::steady_clock::now();
  LinuxSession(entry).openURL("a:b?c=$(d)&e='f' \"g\"");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  setenv("PATH", usual.c_str(), 1);
  const auto opened = folder / "opened";
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(opened); }));
  EXPECT_EQ(TemporaryFolder::read(opened), "a:b?c=$(d)&e='f' \"g\"");
}

struct Locale {
  std::string all;
  std::string messages;
  std::string language;
  std::string list;
  std::vector<std::string> expected;
};

class PreferredLanguages : public testing::TestWithParam<Locale> {};

TEST_P(PreferredLanguages, AreThoseOfTheLocaleOfMessages) {
  const Locale& locale = GetParam();
  setenv("LC_ALL", locale.all.c_str(), 1);
  setenv("LC_MESSAGES", locale.messages.c_str(), 1);
  setenv("LANG", locale.language.c_str(), 1);
  setenv("LANGUAGE", locale.list.c_str(), 1);
  EXPECT_EQ(LinuxResources({}).preferredLanguages(), locale.expected);
  for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"}) unsetenv(variable);
}

INSTANTIATE_TEST_SUITE_P(
    Each, PreferredLanguages,
    testing::Values(Locale{"", "", "", "", {"en"}}, Locale{"C", "de_DE", "de_DE", "de", {"en"}},
                    Locale{"POSIX", "", "", "", {"en"}}, Locale{"C.UTF-8", "", "", "", {"en"}},
                    Locale{"", "", "de_CH.UTF-8", "", {"de-CH"}},
                    Locale{"", "fr_CA@euro", "de_DE", "", {"fr-CA"}},
                    Locale{"zh_CN.UTF-8", "fr_CA", "de_DE", "", {"zh-CN"}},
                    Locale{"", "", "en_GB.UTF-8", "de:fr_CA:", {"de", "fr-CA", "en-GB"}}));

}  // namespace
}  // namespace brivane
