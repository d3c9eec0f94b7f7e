// Devices and permissions that come while the program runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Machines/Linux/Notifications.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/OrdinaryUser.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// No file, library or socket can be opened for a while.
class NoMoreDescriptors {
 public:
  NoMoreDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none{0, usual.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  ~NoMoreDescriptors() { ::setrlimit(RLIMIT_NOFILE, &usual); }
  NoMoreDescriptors(const NoMoreDescriptors&) = delete;
  NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

 private:
  rlimit usual{};
};

class LaterDevicesTest : public BusTest {
 protected:
  std::optional<VCPReading> read(DisplayID display) {
    const auto channel = found.handle(display);
    return channel ? channel->getVCP(0x10) : std::nullopt;
  }

  /// Ends the main queue's run when that many announcements have come.
  Task note(const std::string& what, std::size_t count) {
    return [this, what, count] {
      heard.push_back(what);
      if (heard.size() == count) runtime.stop();
    };
  }

  /// A minute at most.
  void run() {
    const TimerID timer = runtime.after(std::chrono::minutes(1), [this] { runtime.stop(); });
    runtime.run();
    runtime.cancel(timer);
  }

  DisplayRegistry found{displays, registry, loader, runtime};
  std::vector<std::string> heard;
  XEvents noServer{"", runtime};
  LinuxNotifications notifications{noServer, runtime, sleepGate, busSearch, [] {}, [] {}};
};

TEST_F(LaterDevicesTest, DeviceFilesThatAppearAreUsed) {
  {
    const VanishedBuses all;
    EXPECT_EQ(read(alpha), std::nullopt);
    EXPECT_TRUE(missingAccess.noBuses);
  }
  EXPECT_THAT(read(alpha), Optional(VCPReading{50, 100}));
}

TEST_F(LaterDevicesTest, ABacklightThatAppearsDrivesThePanelUntilItGoes) {
  const AppleDisplayBackend services(loader, displays);
  {
    const VanishedBacklights all;
    EXPECT_FALSE(services.canControl(laptop));
  }
  EXPECT_TRUE(services.canControl(laptop));
  EXPECT_EQ(services.read(laptop), 40);
  EXPECT_TRUE(services.write(80, laptop));
  EXPECT_EQ(services.read(laptop), 80);
  const VanishedBacklights all;
  EXPECT_FALSE(services.canControl(laptop));
  EXPECT_FALSE(services.write(60, laptop));
}

TEST_F(LaterDevicesTest, ADeviceFileThatTheUserMayOpenLaterIsUsed) {
  auto forbidden = std::make_unique<Forbidden>("/dev/i2c-5");
  std::array<int, 2> refused{};
  ASSERT_EQ(::pipe(refused.data()), 0);
  std::thread rule([&] {
    char byte = 0;
    EXPECT_EQ(::read(refused[0], &byte, 1), 1);
    forbidden.reset();
  });
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    return !read(alpha) && ::write(refused[1], "", 1) == 1 &&
           eventually([&] { return read(alpha).has_value(); });
  }));
  // Ends the thread also when the user was not refused.
  EXPECT_EQ(::write(refused[1], "", 1), 1);
  rule.join();
  for (const int end : refused) ::close(end);
}

TEST_F(LaterDevicesTest, BusesThatMayLeadToMonitorsAndDevicesWithKeysAreAnnouncedAndNoOthers) {
  constexpr std::size_t expected = 5;
  const auto buses = notifications.observeMonitorBuses(note("bus", expected));
  const auto keyboards = notifications.observeKeyboards(note("keyboard", expected));
  announceDevice("add", "i2c-dev/i2c-10");
  announceDevice("add", "input/event6");
  announceDevice("add", "i2c-dev/i2c-6");
  announceDevice("add", "i2c-dev/i2c-8");
  announceDevice("remove", "i2c-dev/i2c-8");
  announceDevice("change", "i2c-dev/i2c-5");
  announceDevice("remove", "input/event3");
  announceDevice("add", "input/event3");
  announceDevice("add", "input/event4");
  run();
  EXPECT_THAT(heard, ElementsAre("bus", "bus", "bus", "keyboard", "keyboard"));
}

TEST_F(LaterDevicesTest, WithoutUdevNothingIsAnnouncedAndNothingFails) {
  constexpr std::size_t expected = 2;
  LinuxNotifications withoutUdev{noServer, runtime, sleepGate, busSearch, [] {}, [] {}};
  Observation unheard;
  {
    const NoMoreDescriptors neitherLibraryNorSocket;
    unheard = withoutUdev.observeMonitorBuses(note("heard without udev", expected));
  }
  const auto buses = notifications.observeMonitorBuses(note("bus", expected));
  for (std::size_t count = 0; count < expected; ++count) announceDevice("add", "i2c-dev/i2c-5");
  run();
  EXPECT_THAT(heard, ElementsAre("bus", "bus"));
  EXPECT_THAT(read(alpha), Optional(VCPReading{50, 100}));
}

}  // namespace
}  // namespace brivane
