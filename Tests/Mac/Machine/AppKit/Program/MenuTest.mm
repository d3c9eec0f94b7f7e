#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;

/// The system's tool for agents: writes down what it is asked, and prints what it is told to.
constexpr auto launchctl = R"(#!/bin/sh
folder=$(dirname "$0")
for word; do printf '%s\n' "$word"; done >>"$folder/asked"
echo . >>"$folder/asked"
case $1 in print-disabled) cat "$folder/disabled" ;; esac
)";

std::string writeTool(const TemporaryFolder& folder, const std::string& name,
                      const std::string& text) {
  const std::string tool = folder.write(name, text);
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  return tool;
}

TEST_F(MacWholeProgram, ASliderThatTheMouseStillHoldsAfterTheEndMovesNothing) {
  desktop.storedPositions = {"com.quorrel.brivane.status"};
  waitUntil([this] { return hasSlider("Right") && mappedKeys() != 0; });
  then(0, [this] { desktop.open(desktop.statusItems[0].menu); });
  waitUntil([this] { return slider("Right") != nil; });
  then(0, [this] {
    ASSERT_NE(slider("Right"), nil);
    desktop.hold();
    desktop.drag(slider("Right"), -40);
  });
  waitUntil([] { return whiteOfRight() < 1; });
  thenEnd(0);
  waitUntil([this] { return whiteOfRight() == 1 && mappedKeys() == 0; });
  then(0, [this] { desktop.drag(slider("Right"), -60); });
  then(0.3, [this] {
    EXPECT_EQ(whiteOfRight(), 1);
    EXPECT_NE(desktop.openMenu, nil) << "the mouse is still followed";
    desktop.letGo();
  });
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(whiteOfRight(), 1);
  EXPECT_THAT(desktop.storedPositions, ElementsAre("com.quorrel.brivane.status"));
}

TEST_F(MacWholeProgram, StartsAtLoginOnlyOnceItIsInstalledAndAsTheUserSays) {
  const std::string item = "Launch at Login";
  fake::system().programs["/bin/launchctl"] = writeTool(world.folder, "launchctl", launchctl);
  fake::system().accountFolder = (world.folder / "home").string();
  world.folder.write("disabled", "");
  const auto asked = [this] {
    const std::string words = TemporaryFolder::read(world.folder / "asked");
    world.folder.write("asked", "");
    return words;
  };
  const std::string domain = "gui/" + std::to_string(getuid());
  const std::string agent =
      (world.folder / "home/Library/LaunchAgents/com.quorrel.brivane.plist").string();
  const std::string look = "print-disabled\n" + domain + "\n.\n";
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this, item, asked, agent] {
    EXPECT_FALSE(isTicked(item));
    chooseFromTheMenu(item);
    EXPECT_THAT(fake::system().log,
                Contains("Brivane: no LaunchAgent installed; run ./install.sh to enable launch at "
                         "login."));
    EXPECT_EQ(asked(), "") << "no child was started";
    std::filesystem::create_directories(std::filesystem::path(agent).parent_path());
    world.folder.write("home/Library/LaunchAgents/com.quorrel.brivane.plist", "");
    EXPECT_TRUE(isTicked(item));
    EXPECT_NE(asked(), "");
    chooseFromTheMenu(item);
  });
  then(0.1, [this, item, asked, domain, look] {
    EXPECT_EQ(asked(), look + look + "disable\n" + domain + "/com.quorrel.brivane\n.\n");
    world.folder.write("disabled", "\t\"com.quorrel.brivane\" => disabled\n");
    EXPECT_FALSE(isTicked(item));
    asked();
    chooseFromTheMenu(item);
  });
  then(0.1, [asked, domain, agent, look] {
    EXPECT_EQ(asked(), look + look + "enable\n" + domain + "/com.quorrel.brivane\n.\nbootstrap\n" +
                           domain + "\n" + agent + "\n.\n");
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, TheKeyboardsKeysStayUntickedWhenTheirMappingIsRefused) {
  const std::string item = "Use System Brightness Keys";
  waitUntil([this, item] { return mappedKeys() == 6 && isTicked(item); });
  then(0, [this, item] { chooseFromTheMenu(item); });
  waitUntil([this] { return mappedKeys() == 0; });
  then(0, [this, item] {
    EXPECT_FALSE(isTicked(item));
    fake::system().programs["/usr/bin/hidutil"] =
        writeTool(world.folder, "refusing", "#!/bin/sh\nexit 1\n");
    chooseFromTheMenu(item);
  });
  then(0.3, [this, item] {
    EXPECT_FALSE(isTicked(item));
    EXPECT_EQ(mappedKeys(), 0);
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, DimmingIsClearedAndTheSavedLevelRestoredFromTheMenu) {
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this] { dragRightTo(-40); });
  waitUntil([this] { return whiteOfRight() < 1 && levelShownOnRight() == 0; });
  then(0, [this] { chooseFromTheMenu("Clear Software Dimming and Brightening"); });
  waitUntil([] { return whiteOfRight() == 1; });
  then(0, [this] {
    MonitorFirmware::setLevelByButtons(world.monitors[2]->state, 21);
    chooseFromTheMenu("Restore Saved Brightness");
  });
  waitUntil([this] { return levelShownOnRight() == 0; });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, DisplaysThatDoNotRespondAreRetriedFromTheMenu) {
  world.monitors[2]->state.mood = MonitorMood::silent;
  then(5, [this] {
    desktop.open(desktop.statusItems[0].menu);
    EXPECT_NE(slider("Upper"), nil);
    EXPECT_EQ(slider("Right"), nil);
    const std::lock_guard lock(fake::mac().mutex);
    world.monitors[2]->state.mood = MonitorMood::answering;
  });
  then(0.4, [this] {
    EXPECT_EQ(slider("Right"), nil) << "its next turn is yet to come";
    desktop.choose("Retry Displays That Don’t Respond");
  });
  waitUntil([this] { return hasSlider("Right"); });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

}  // namespace
}  // namespace brivane
