#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "BrivaneApp/AppDelegate.h"
#include "BrivaneApp/KeylessDesktopNotice.h"
#include "Tests/Support/ApplicationTexts.h"
#include "Tests/Support/ResidentBench.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

/// A desktop's notices.
struct FakeUserNotices : UserNotices {
  bool remembers(const std::string& name) override { return memory.contains(name); }
  void remember(const std::string& name) override { memory.insert(name); }
  void post(const UserNotice& notice, Task posted, Task pressed) override {
    ++posts;
    if (!isThere) return;
    shown = notice;
    press = std::move(pressed);
    posted();
  }

  bool isThere = true;
  std::set<std::string> memory;
  int posts = 0;
  std::optional<UserNotice> shown;
  Task press;
};

/// The resident program on a desktop that has taken both hotkeys and the brightness keys, and has
/// no tray.
struct KeylessDesktopNoticeTest : testing::Test, ResidentBench {
  KeylessDesktopNoticeTest() {
    applicationTexts(machine);
    machine.notices = &notices;
    machine.access.trusted = true;
    machine.taps.areKeysElsewhere = true;
    toolWorks = false;
    machine.hotkeyGrabs.taken = {{upArrow, controlAndOption}, {downArrow, controlAndOption}};
  }

  void launch() {
    delegate.emplace(machine, frame);
    delegate->applicationDidFinishLaunching();
    frame.statusItem->isShown = false;
  }
  void launchAndWait() {
    launch();
    run(10min);
  }

  FakeUserNotices notices;
  std::optional<AppDelegate> delegate;
};

TEST_F(KeylessDesktopNoticeTest, IsPostedAfterThirtySecondsWithTheHotkeysAndTheMenusCommand) {
  launch();
  run(29s);
  EXPECT_EQ(notices.posts, 0);
  run(1s);
  ASSERT_TRUE(notices.shown);
  EXPECT_EQ(notices.shown->title, "notice.keylessDesktop.title");
  EXPECT_EQ(notices.shown->text, "notice.keylessDesktop.text (⌃⌥↑, ⌃⌥↓, menu.changeHotkeys)");
  EXPECT_EQ(notices.shown->button, "menu.changeHotkeys");
  run(10min);
  EXPECT_EQ(notices.posts, 1);
}

TEST_F(KeylessDesktopNoticeTest, ItsButtonOpensTheHotkeyEditor) {
  launchAndWait();
  ASSERT_TRUE(notices.press);
  EXPECT_EQ(frame.editorWindow, nullptr);
  notices.press();
  ASSERT_NE(frame.editorWindow, nullptr);
  EXPECT_TRUE(frame.editorWindow->visible);
}

TEST_F(KeylessDesktopNoticeTest, AButtonPressedWhenTheProgramHasEndedDoesNothing) {
  launchAndWait();
  delegate.reset();
  notices.press();
  EXPECT_EQ(frame.editorWindow, nullptr);
}

TEST_F(KeylessDesktopNoticeTest, WhatWasSaidIsNotSaidAgain) {
  launchAndWait();
  const auto settings = machine.settings.values;
  launchAndWait();
  EXPECT_EQ(notices.posts, 1);
  EXPECT_EQ(machine.settings.values, settings) << "nor remembered in the settings";
}

TEST_F(KeylessDesktopNoticeTest, WithoutAServiceItIsSaidOnceThereIsOne) {
  notices.isThere = false;
  launchAndWait();
  EXPECT_THAT(notices.memory, IsEmpty());
  notices.isThere = true;
  launchAndWait();
  EXPECT_TRUE(notices.shown);
}

TEST_F(KeylessDesktopNoticeTest, ATrayThatComesLateIsWaitedFor) {
  launch();
  run(29s);
  frame.statusItem->isShown = true;
  run(10min);
  EXPECT_EQ(notices.posts, 0);
}

TEST_F(KeylessDesktopNoticeTest, AnyKeyThatArrivesIsEnough) {
  machine.hotkeyGrabs.taken = {{upArrow, controlAndOption}};
  launchAndWait();
  EXPECT_EQ(notices.posts, 0) << "one of the hotkeys";
  machine.hotkeyGrabs.taken.insert({downArrow, controlAndOption});
  machine.taps.areKeysElsewhere = false;
  launchAndWait();
  EXPECT_EQ(notices.posts, 0) << "the brightness keys";
  machine.taps.areKeysElsewhere = true;
  machine.settings.values["SystemBrightnessKeysEnabled"] = {true};
  toolWorks = true;
  launchAndWait();
  EXPECT_EQ(notices.posts, 0) << "the relay";
}

TEST_F(KeylessDesktopNoticeTest, HotkeysThatTheUserHasSwitchedOffOrIsChangingAreNotMissed) {
  machine.settings.values["CustomHotkeysEnabled"] = {false};
  launchAndWait();
  EXPECT_EQ(notices.posts, 0);
  machine.settings.values["CustomHotkeysEnabled"] = {true};
  launch();
  frame.statusItem->ownMenu.open();
  frame.statusItem->ownMenu.choose("menu.changeHotkeys");
  frame.editorWindow->click(0);
  run(10min);
  EXPECT_EQ(notices.posts, 0);
}

}  // namespace
}  // namespace brivane
