// Both scripts, interrupted or killed at each of their steps: a Brivane that was there is there
// afterwards, old or new, and whole; and running the script again finishes the work.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

using OnMac = std::function<void(const PlayedMac&)>;
using AfterRun = std::function<void(const PlayedMac&, const PlayedMac::Result&)>;

void playNothing(const PlayedMac& /*mac*/) {}

void playOldApp(const PlayedMac& mac) {
  mac.playEarlierInstallation(mac.home() / "Applications");
}

/// Once for each tool that the script calls, the last but one included: after that it has nothing
/// to do.
void atEachStep(const std::string& script, const std::string& signal, const OnMac& arrange,
                const AfterRun& check) {
  const PlayedMac undisturbed;
  arrange(undisturbed);
  undisturbed.run(script);
  for (int step = 1; step <= undisturbed.steps(); ++step) {
    SCOPED_TRACE(signal + " at step " + std::to_string(step) + " of " + script);
    const PlayedMac mac;
    arrange(mac);
    mac.set("interrupt", signal + " " + std::to_string(step) + "\n");
    const auto result = mac.run(script);
    mac.forget("interrupt");
    check(mac, result);
    if (testing::Test::HasFailure()) return;
  }
}

struct InterruptionTest : testing::TestWithParam<const char*> {
  /// Which versions were met, so that a test knows that it saw both.
  std::set<std::string> met;
};

TEST_P(InterruptionTest, AnUpdateLeavesTheOldAppOrTheNewOneRunning) {
  atEachStep("install.sh", GetParam(), playOldApp, [this](const auto& mac, const auto& result) {
    const auto version = PlayedMac::version(mac.app());
    met.insert(version);
    EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications")) << result.output;
    EXPECT_TRUE(version == "old" || version == "new") << version;
    EXPECT_TRUE(mac.has("running")) << result.output;
    if (result.status == 0) {
      EXPECT_EQ(version, "new");
    } else {
      EXPECT_THAT(result.output, HasSubstr("Interrupted, with nothing left half done."));
    }
  });
  EXPECT_EQ(met, (std::set<std::string>{"old", "new"}));
}

TEST_P(InterruptionTest, AFirstInstallationLeavesAllOrNothing) {
  atEachStep("install.sh", GetParam(), playNothing, [this](const auto& mac, const auto& result) {
    met.insert(PlayedMac::version(mac.app()));
    if (PlayedMac::version(mac.app()).empty()) {
      EXPECT_THAT(mac.found(), IsEmpty());
      EXPECT_THAT(result.output, HasSubstr("Interrupted, with nothing left half done."));
    } else {
      EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications")) << result.output;
    }
  });
  EXPECT_EQ(met, (std::set<std::string>{"", "new"}));
}

TEST_P(InterruptionTest, UninstallingLeavesAllOrNothing) {
  atEachStep("uninstall.sh", GetParam(), playOldApp, [this](const auto& mac, const auto& result) {
    met.insert(PlayedMac::version(mac.app()));
    if (PlayedMac::version(mac.app()).empty()) {
      EXPECT_THAT(mac.found(), IsEmpty());
      EXPECT_EQ(result.status, 0);
    } else {
      EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
      EXPECT_TRUE(mac.has("running"));
      EXPECT_EQ(result.output, "Interrupted; Brivane is still installed.\n");
    }
  });
  EXPECT_EQ(met, (std::set<std::string>{"", "old"}));
}

INSTANTIATE_TEST_SUITE_P(By, InterruptionTest, testing::Values("INT", "TERM"),
                         [](const auto& parameter) { return std::string(parameter.param); });

TEST(KillTest, AnUpdateThatWasKilledIsFinishedByTheNext) {
  atEachStep("install.sh", "KILL", playOldApp, [](const auto& mac, const auto& result) {
    EXPECT_NE(result.status, 0);
    const auto again = mac.run("install.sh");
    EXPECT_EQ(again.status, 0) << again.output;
    EXPECT_EQ(mac.found(), mac.foundWith(mac.home() / "Applications"));
    EXPECT_EQ(PlayedMac::version(mac.app()), "new");
    EXPECT_TRUE(mac.has("running"));
  });
}

TEST(KillTest, UninstallingTakesAwayWhatAKilledUpdateLeft) {
  atEachStep("install.sh", "KILL", playOldApp, [](const auto& mac, const auto& /*result*/) {
    EXPECT_EQ(mac.run("uninstall.sh").status, 0);
    EXPECT_THAT(mac.found(), IsEmpty());
    EXPECT_FALSE(mac.has("running"));
  });
}

TEST(KillTest, UninstallingThatWasKilledIsFinishedByTheNext) {
  atEachStep("uninstall.sh", "KILL", playOldApp, [](const auto& mac, const auto& /*result*/) {
    EXPECT_EQ(mac.run("uninstall.sh").status, 0);
    auto found = mac.found();
    // Killed between its last file and itself, this folder is nobody's any more.
    found.erase("home/Library/LaunchAgents/");
    EXPECT_THAT(found, IsEmpty());
  });
}

}  // namespace
}  // namespace brivane
