// Notices over a session bus with a notification service on it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/UserNotices.h"
#include "Tests/Support/FakeNotificationHost.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class UserNoticesTest : public testing::Test {
 protected:
  UserNoticesTest() {
    setenv("DBUS_SESSION_BUS_ADDRESS", sessionBus->address().c_str(), 1);
    setenv("XDG_STATE_HOME", state.path.c_str(), 1);
  }
  void TearDown() override {
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("XDG_STATE_HOME");
  }

  void post(const std::string& text = "What to do.") {
    notices.post(
        {"What is wrong", text, "Do it"}, [this] { ++posted; }, [this] { ++pressed; });
  }
  std::optional<FakeNotificationHost::Notification> shown(FakeNotificationHost& host) {
    runUntil([this] { return posted > 0; });
    const auto all = host.notifications();
    return all.size() == 1 ? std::optional(all.front()) : std::nullopt;
  }

  void run(Microseconds duration) {
    runtime.after(duration, [this] { runtime.stop(); });
    runtime.run();
  }
  bool runUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + 1min;
    while (!holds() && std::chrono::steady_clock::now() < deadline) run(5ms);
    return holds();
  }

  std::unique_ptr<PrivateBus> sessionBus = std::make_unique<PrivateBus>();
  const TemporaryFolder state;
  int posted = 0;
  int pressed = 0;
  ThreadRuntime runtime;
  SessionBus connection{runtime};
  LinuxUserNotices notices{connection};
};

TEST_F(UserNoticesTest, ANoticeIsShownUnderTheProgramsNameWithItsButton) {
  FakeNotificationHost host(sessionBus->address());
  post();
  const auto notification = shown(host);
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->application, "Brivane");
  EXPECT_EQ(notification->icon, "com.quorrel.brivane");
  EXPECT_EQ(notification->title, "What is wrong");
  EXPECT_EQ(notification->text, "What to do.");
  EXPECT_THAT(notification->actions,
              ElementsAre(Pair("button", "Do it"), Pair("default", "Do it")));
  EXPECT_EQ(notification->desktopEntry, "com.quorrel.brivane");
  EXPECT_EQ(notification->urgency, 1);
  EXPECT_EQ(notification->milliseconds, -1);
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(pressed, 0);
}

TEST_F(UserNoticesTest, APressOfTheButtonOrOfTheNoticeIsReportedOnce) {
  for (const auto* action : {"button", "default"}) {
    pressed = 0;
    SessionBus ownConnection(runtime);
    LinuxUserNotices own(ownConnection);
    FakeNotificationHost host(sessionBus->address());
    own.post(
        {"What is wrong", "What to do.", "Do it"}, [] {}, [this] { ++pressed; });
    ASSERT_TRUE(runUntil([&] { return host.notifications().size() == 1; }));
    host.press(1, action);
    EXPECT_TRUE(runUntil([this] { return pressed == 1; })) << action;
    host.press(1, action);
    run(50ms);
    EXPECT_EQ(pressed, 1) << action;
  }
}

TEST_F(UserNoticesTest, APressOfAnotherNoticeOrOfAClosedOnesNumberIsNotReported) {
  FakeNotificationHost host(sessionBus->address());
  post();
  ASSERT_TRUE(shown(host));
  host.press(2, "default");
  host.close(1);
  host.press(1, "default");
  run(50ms);
  EXPECT_EQ(pressed, 0);
}

TEST_F(UserNoticesTest, AServiceWithoutActionsAndMarkupGetsNoButtonAndTheTextAsItIs) {
  FakeNotificationHost host(sessionBus->address(), {"body"});
  post("⌃< & ⌃>");
  const auto notification = shown(host);
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->text, "⌃< & ⌃>");
  EXPECT_THAT(notification->actions, IsEmpty());
}

TEST_F(UserNoticesTest, AServiceWithMarkupGetsNoTagsThatTheTextDoesNotMean) {
  FakeNotificationHost host(sessionBus->address(), {"body", "body-markup"});
  post("⌃< & ⌃>");
  const auto notification = shown(host);
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->text, "⌃&lt; &amp; ⌃&gt;");
}

TEST_F(UserNoticesTest, AServiceThatTakesLongIsWaitedFor) {
  FakeNotificationHost host(sessionBus->address());
  host.answersAfter = 1200ms;
  post();
  EXPECT_TRUE(shown(host));
}

TEST_F(UserNoticesTest, WithoutAServiceNothingIsPosted) {
  post();
  run(50ms);
  FakeNotificationHost host(sessionBus->address());
  run(50ms);
  EXPECT_EQ(posted, 0);
  EXPECT_THAT(host.notifications(), IsEmpty());
}

TEST_F(UserNoticesTest, WithoutASessionBusNothingIsPosted) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody", 1);
  post();
  run(50ms);
  EXPECT_EQ(posted, 0);
}

TEST_F(UserNoticesTest, ABusThatGoesTakesTheNoticeWithIt) {
  auto host = std::make_unique<FakeNotificationHost>(sessionBus->address());
  post();
  ASSERT_TRUE(shown(*host));
  host = nullptr;
  sessionBus = nullptr;
  EXPECT_TRUE(runUntil([this] { return connection.connection() == nullptr; }));
  EXPECT_EQ(pressed, 0);
}

TEST_F(UserNoticesTest, WhatIsRememberedIsAFileInTheUsersStateFolder) {
  EXPECT_FALSE(notices.remembers("one"));
  notices.remember("one");
  EXPECT_TRUE(LinuxUserNotices(connection).remembers("one"));
  EXPECT_FALSE(notices.remembers("two"));
  EXPECT_TRUE(std::filesystem::exists(state / "brivane/one"));
}

TEST_F(UserNoticesTest, AStateFolderThatCannotBeMadeOrReadRemembersNothing) {
  const auto obstacle = state.write("brivane", "another file");
  notices.remember("one");
  EXPECT_FALSE(notices.remembers("one"));
  EXPECT_EQ(TemporaryFolder::read(obstacle), "another file");
}

}  // namespace
}  // namespace brivane
