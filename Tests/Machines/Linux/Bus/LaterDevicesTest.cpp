// Devices and permissions that come while the program runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Machines/Linux/Notifications.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/OrdinaryUser.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::Optional;

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

TEST_F(LaterDevicesTest, ADeviceFileThatARuleOpensToTheUserIsUsed) {
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
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    const auto buses = notifications.observeMonitorBuses([] {});
    return buses && read(alpha);
  }));
}

}  // namespace
}  // namespace brivane
