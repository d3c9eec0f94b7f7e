#include <gmock/gmock.h>
#include <stdlib.h>

#include <atomic>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Machines/Linux/Notifications.h"
#include "Machines/Linux/SessionBacklight.h"
#include "Tests/Machines/Linux/X11/XInput.h"
#include "Tests/Support/FakeLogind.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Notifications : public XInputTest {
 protected:
  Notifications() { setenv("DBUS_SYSTEM_BUS_ADDRESS", logind.address().c_str(), 1); }

  Task note(const std::string& what) {
    return [this, what] { heard.push_back(what + (asleep ? " asleep" : "")); };
  }

  /// The different things that were heard.
  std::set<std::string> kinds() { return {heard.begin(), heard.end()}; }

  FakeLogind logind;
  std::atomic<bool> asleep = false;
  std::vector<std::string> heard;
  LinuxNotifications notifications{events, runtime, asleep, [this] { note("sleep begins")(); }};
};

TEST_F(Notifications, ScreensThatMoveGoOffAndComeBackAreAnnouncedEachTime) {
  const auto observation = notifications.observeScreenParameters(note("screens"));
  settle();
  for (const auto& change :
       std::vector<std::function<void()>>{[&] { rig.move(0, 0, 100); }, [&] { rig.turnOff(1); },
                                          [&] { rig.turnOn(1); }, [&] { rig.setPrimary(2); }}) {
    heard.clear();
    change();
    settle();
    EXPECT_EQ(kinds(), std::set<std::string>{"screens"});
  }
}

TEST_F(Notifications, ScreensThatWakeFromTheSaverAreAnnouncedAndTheirSleepIsNot) {
  const auto observation = notifications.observeScreensDidWake(note("screens woke"));
  rig.switchScreenSaver(true);
  settle();
  EXPECT_THAT(heard, IsEmpty());
  rig.switchScreenSaver(false);
  settle();
  EXPECT_THAT(heard, ElementsAre("screens woke"));
}

TEST_F(Notifications, SleepIsOverForTheProgramBeforeItsWakeIsAnnounced) {
  const auto observation = notifications.observeDidWake(note("woke"));
  logind.announceSleep(true);
  settle();
  EXPECT_TRUE(asleep);
  EXPECT_THAT(heard, ElementsAre("sleep begins asleep"));
  logind.announceSleep(false);
  settle();
  EXPECT_FALSE(asleep);
  EXPECT_THAT(heard, ElementsAre("sleep begins asleep", "woke"));
}

TEST_F(Notifications, WithoutABusNothingIsEverHeard) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus", 1);
  const auto observation = notifications.observeDidWake(note("woke"));
  logind.announceSleep(false);
  settle();
  EXPECT_THAT(heard, IsEmpty());
}

TEST(SessionBacklight, IsSetThroughLogindByTheSessionAtTheScreen) {
  FakeLogind logind;
  setenv("DBUS_SYSTEM_BUS_ADDRESS", logind.address().c_str(), 1);
  SessionBacklight backlight;
  EXPECT_TRUE(backlight.canSet());
  EXPECT_EQ(backlight.set("intel_backlight", 300), 0);
  EXPECT_THAT(logind.brightnessCalls(), ElementsAre("backlight intel_backlight 300"));
  logind.isActive = false;
  EXPECT_FALSE(backlight.canSet());
  EXPECT_NE(backlight.set("intel_backlight", 400), 0);
  EXPECT_THAT(logind.brightnessCalls(), ElementsAre("backlight intel_backlight 300"));
}

TEST(SessionBacklight, FindsABusAgainThatWasGoneForAWhile) {
  SessionBacklight backlight;
  {
    FakeLogind first;
    setenv("DBUS_SYSTEM_BUS_ADDRESS", first.address().c_str(), 1);
    EXPECT_TRUE(backlight.canSet());
  }
  EXPECT_FALSE(backlight.canSet());
  FakeLogind second;
  setenv("DBUS_SYSTEM_BUS_ADDRESS", second.address().c_str(), 1);
  EXPECT_TRUE(backlight.canSet());
}

TEST(SessionBacklight, CantBeSetWithoutABus) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus", 1);
  SessionBacklight backlight;
  EXPECT_FALSE(backlight.canSet());
  EXPECT_NE(backlight.set("intel_backlight", 300), 0);
}

}  // namespace
}  // namespace brivane
