#include <gmock/gmock.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/Notifications.h"
#include "Machines/Linux/SessionBacklight.h"
#include "Tests/Machines/Linux/X11/XInput.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// A socket at which each connection is closed at once, or never answered.
class StubbornBus {
 public:
  enum class Manner { hangsUp, isSilent };

  explicit StubbornBus(Manner busManner) : manner(busManner) {
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    path().copy(static_cast<char*>(place.sun_path), sizeof(place.sun_path) - 1);
    EXPECT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&place), sizeof(place)), 0);
    EXPECT_EQ(::listen(listener, 1), 0);
    server = std::thread([this] { serve(); });
  }
  ~StubbornBus() {
    ::shutdown(listener, SHUT_RDWR);
    server.join();
    ::close(listener);
  }
  StubbornBus(const StubbornBus&) = delete;
  StubbornBus& operator=(const StubbornBus&) = delete;

  std::string address() const { return "unix:path=" + path(); }

  std::atomic<int> calls = 0;

 private:
  std::string path() const { return folder.path / "bus"; }
  void serve() {
    for (int call = 0; (call = ::accept(listener, nullptr, nullptr)) >= 0; ++calls) {
      FileDescriptor connection(call);
      if (manner == Manner::isSilent) silent.push_back(std::move(connection));
    }
  }

  const Manner manner;
  const TemporaryFolder folder;
  std::vector<FileDescriptor> silent;
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::thread server;
};

class Notifications : public XInputTest {
 protected:
  Notifications() { startBus(); }

  Task note(const std::string& what) {
    return [this, what] {
      const bool held = logind && !logind->inhibitors().empty();
      reported.push_back(what + (gate.enter() ? "" : " asleep") + (held ? " held" : ""));
    };
  }

  /// Waits until that many inhibitors are held.
  bool holds(std::size_t count) {
    return settleUntil([&] { return logind->inhibitors().size() == count; });
  }

  /// The kinds of notifications received.
  std::set<std::string> kinds() { return {reported.begin(), reported.end()}; }

  /// Waits for that many notifications.
  bool waitForReports(std::size_t count) {
    return settleUntil([&] { return reported.size() >= count; });
  }

  /// The bus goes, and logind with it.
  void endBus() { logind.reset(); }

  /// Another bus, with a logind on it.
  void startBus() {
    logind = std::make_unique<FakeLogind>();
    setenv("DBUS_SYSTEM_BUS_ADDRESS", logind->address().c_str(), 1);
  }

  std::unique_ptr<FakeLogind> logind;
  SleepGate gate;
  const Connectors connectors;
  const BusSearch busSearch{connectors, gate};
  std::vector<std::string> reported;
  LinuxNotifications notifications{events,
                                   runtime,
                                   gate,
                                   busSearch,
                                   [this] { note("saved")(); },
                                   [this] { reported.emplace_back("no bus"); }};
};

TEST_F(Notifications, ScreensThatMoveGoOffAndComeBackAreAnnouncedEachTime) {
  const auto observation = notifications.observeScreenParameters(note("screens"));
  settle();
  for (const auto& change :
       std::vector<std::function<void()>>{[&] { rig.move(0, 0, 100); }, [&] { rig.turnOff(1); },
                                          [&] { rig.turnOn(1); }, [&] { rig.setPrimary(2); }}) {
    reported.clear();
    change();
    settle();
    EXPECT_EQ(kinds(), std::set<std::string>{"screens"});
  }
}

TEST_F(Notifications, ScreensThatWakeFromTheSaverAreAnnouncedAndTheirSleepIsNot) {
  const auto observation = notifications.observeScreensDidWake(note("screens woke"));
  rig.switchScreenSaver(true);
  settle();
  EXPECT_THAT(reported, IsEmpty());
  rig.switchScreenSaver(false);
  settle();
  EXPECT_THAT(reported, ElementsAre(StartsWith("screens woke")));
}

TEST_F(Notifications, SleepIsOverForTheProgramBeforeItsWakeIsAnnounced) {
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(holds(1));
  logind->announceSleep(true);
  ASSERT_TRUE(holds(0));
  EXPECT_FALSE(gate.enter());
  EXPECT_THAT(reported, ElementsAre("saved asleep held"));
  logind->announceSleep(false);
  ASSERT_TRUE(waitForReports(2));
  settle();
  EXPECT_TRUE(gate.enter());
  EXPECT_THAT(reported, ElementsAre("saved asleep held", StartsWith("woke")));
}

TEST_F(Notifications, SleepWaitsForTheProgramAndForNoLonger) {
  EXPECT_THAT(logind->inhibitors(), IsEmpty());
  const auto observation = notifications.observeDidWake([] {});
  for (int night = 0; night < 2; ++night) {
    ASSERT_TRUE(holds(1));
    EXPECT_THAT(logind->inhibitors(), ElementsAre("sleep delay Brivane"));
    logind->announceSleep(true);
    ASSERT_TRUE(holds(0));
    logind->announceSleep(false);
  }
}

TEST_F(Notifications, SleepWaitsForAMessageThatIsOnTheWire) {
  const auto observation = notifications.observeDidWake([] {});
  ASSERT_TRUE(holds(1));
  const auto queue = runtime.makeSerialQueue("wire", QueueQuality::utility);
  std::atomic<bool> isOnTheWire = false;
  queue->async([&] {
    const auto passage = gate.enter();
    isOnTheWire = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    reported.push_back(logind->inhibitors().empty() ? "sleeps already" : "still awake");
  });
  while (!isOnTheWire) std::this_thread::yield();
  logind->announceSleep(true);
  ASSERT_TRUE(holds(0));
  EXPECT_THAT(reported, ElementsAre("still awake", "saved asleep held"));
}

TEST_F(Notifications, SleepAndWakeAreReportedWithoutAnInhibitorToo) {
  logind->refusesInhibitors = true;
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(settleUntil([&] { return logind->refusals == 1; }));
  logind->announceSleep(true);
  logind->announceSleep(false);
  ASSERT_TRUE(waitForReports(2));
  settle();
  EXPECT_THAT(reported, ElementsAre("saved asleep", "woke"));
}

TEST_F(Notifications, WithoutABusOneLineSaysSoAndNothingIsReported) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus", 1);
  const auto observation = notifications.observeDidWake(note("woke"));
  const auto other = notifications.observeScreensDidWake(note("screens woke"));
  logind->announceSleep(false);
  settle();
  EXPECT_THAT(reported, ElementsAre("no bus"));
}

TEST_F(Notifications, ABusThatHangsUpAtEachAttemptIsReportedOnce) {
  const StubbornBus bus(StubbornBus::Manner::hangsUp);
  setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(settleUntil([&] { return bus.calls >= 2; }));
  settle();
  EXPECT_THAT(reported, ElementsAre("no bus"));
}

TEST_F(Notifications, ABusThatNeverAnswersKeepsNobodyWaiting) {
  const StubbornBus bus(StubbornBus::Manner::isSilent);
  setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
  const auto start = std::chrono::steady_clock::now();
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(settleUntil([&] { return bus.calls == 1; }));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(Notifications, ABusThatIsLostDuringSleepCountsAsAWake) {
  const auto observation = notifications.observeDidWake(
      [this] { reported.emplace_back(gate.enter() ? "woke" : "sleeps"); });
  ASSERT_TRUE(holds(1));
  logind->announceSleep(true);
  ASSERT_TRUE(waitForReports(1));
  EXPECT_FALSE(gate.enter());
  endBus();
  ASSERT_TRUE(waitForReports(3));
  settle();
  EXPECT_TRUE(gate.enter());
  EXPECT_THAT(reported, UnorderedElementsAre("saved asleep held", "no bus", "woke"));
}

TEST_F(Notifications, ABusThatIsLostWhileAwakeIsReportedOnceAndIsNoWake) {
  const auto observation = notifications.observeDidWake([this] { reported.emplace_back("woke"); });
  ASSERT_TRUE(holds(1));
  endBus();
  ASSERT_TRUE(waitForReports(1));
  settle();
  EXPECT_TRUE(gate.enter());
  EXPECT_THAT(reported, ElementsAre("no bus"));
}

TEST_F(Notifications, ABusThatComesBackIsHeardAndSleepDelayedAgain) {
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(holds(1));
  endBus();
  ASSERT_TRUE(waitForReports(1));
  startBus();
  ASSERT_TRUE(holds(1));
  logind->announceSleep(true);
  ASSERT_TRUE(holds(0));
  EXPECT_THAT(reported, ElementsAre("no bus", "saved asleep held"));
  endBus();
  ASSERT_TRUE(waitForReports(4));
  EXPECT_THAT(reported, Contains("no bus").Times(2)) << "a second loss is a new one";
}

TEST_F(Notifications, ALogindThatStartsAgainEndsItsSleepAndDelaysTheNext) {
  const auto observation = notifications.observeDidWake(note("woke"));
  ASSERT_TRUE(holds(1));
  logind->announceSleep(true);
  ASSERT_TRUE(holds(0));
  logind->restart();
  ASSERT_TRUE(holds(1));
  EXPECT_TRUE(gate.enter());
  EXPECT_THAT(reported, ElementsAre("saved asleep held", StartsWith("woke")));
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
  FakeLogind second;
  setenv("DBUS_SYSTEM_BUS_ADDRESS", second.address().c_str(), 1);
  EXPECT_EQ(backlight.set("intel_backlight", 300), 0) << "at the first call";
  EXPECT_THAT(second.brightnessCalls(), ElementsAre("backlight intel_backlight 300"));
}

TEST(SessionBacklight, CantBeSetWithoutABus) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus", 1);
  SessionBacklight backlight;
  EXPECT_FALSE(backlight.canSet());
  EXPECT_NE(backlight.set("intel_backlight", 300), 0);
}

}  // namespace
}  // namespace brivane
