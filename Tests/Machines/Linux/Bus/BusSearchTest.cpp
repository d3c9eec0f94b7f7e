// Monitors whose connector leads to no bus.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <filesystem>
#include <fstream>

#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/System/Sysfs.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/OrdinaryUser.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

class BusSearchTest : public BusTest {
 protected:
  static constexpr DisplayID gamma = 67;

  void SetUp() override {
    BusTest::SetUp();
    writeConnector("card0-DP-3", "status", "connected\n");
    displays.online.push_back({gamma, 0x0A56, 0x3003, 7, false});
  }

  /// The main board's adapter and those of other connectors are not touched, whatever happens.
  void TearDown() override {
    EXPECT_THAT(events("mainboard"), IsEmpty());
    EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
    EXPECT_THAT(events("DP-1-pins"), IsEmpty());
  }

  bool isFound() { return service("card0-DP-3") != nullptr; }
};

TEST_F(BusSearchTest, AMonitorIsReachedThroughTheAdapterThatAnswersWithItsEDID) {
  DisplayRegistry found(displays, registry, loader, runtime);
  const auto channel = found.handle(gamma);
  ASSERT_NE(channel, nullptr);
  EXPECT_THAT(events("stranger"), ElementsAre("read EDID 128"));
  EXPECT_THAT(events("chain"), ElementsAre("read EDID 128"));
  EXPECT_THAT(channel->getVCP(0x10), Optional(VCPReading{50, 100}));
}

TEST_F(BusSearchTest, IsMadeOncePerArrangement) {
  EXPECT_TRUE(isFound());
  EXPECT_TRUE(isFound());
  EXPECT_FALSE(missingAccess.buses.first());
  EXPECT_THAT(events("chain"), ElementsAre("read EDID 128"));
  writeConnector("card0-DP-3", "status", "disconnected\n");
  EXPECT_FALSE(isFound());
  writeConnector("card0-DP-3", "status", "connected\n");
  EXPECT_TRUE(isFound());
  EXPECT_THAT(events("chain"), ElementsAre("read EDID 128", "read EDID 128")) << "another dock?";
  const Vanished adapter("/sys/class/i2c-dev/i2c-9");
  EXPECT_TRUE(isFound());
  EXPECT_THAT(events("chain"), SizeIs(3));
}

TEST_F(BusSearchTest, WaitsForABusThatAnotherProgramUses) {
  const FileDescriptor other(::open("/dev/i2c-8", O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
  EXPECT_FALSE(isFound());
  EXPECT_THAT(events("chain"), IsEmpty());
  ::flock(other.get(), LOCK_UN);
  EXPECT_TRUE(isFound());
}

TEST_F(BusSearchTest, SaysThatAnAdapterMayNotBeOpened) {
  const Forbidden node("/dev/i2c-8");
  EXPECT_TRUE(holdsForOrdinaryUser(
      [&] { return !isFound() && missingAccess.buses.first()->kind == BusTrouble::notPermitted; }));
}

TEST_F(BusSearchTest, IsMadeAgainWhenADeviceFileCanBeOpened) {
  {
    const Vanished node("/dev/i2c-8");
    EXPECT_FALSE(isFound());
  }
  EXPECT_TRUE(isFound());
}

TEST_F(BusSearchTest, AsksOnlyAtTheAddressOfTheEDID) {
  turn("chain", "mood", "wire:ENXIO");
  EXPECT_FALSE(isFound());
  EXPECT_EQ(missingAccess.buses.first()->kind, BusTrouble::noBus);
  EXPECT_EQ(missingAccess.buses.first()->monitor, "card0-DP-3");
  turn("chain", "mood", "");
  EXPECT_THAT(events("chain"), ElementsAre("error 6"));
  EXPECT_THAT(events("stranger"), ElementsAre("read EDID 128"));
}

TEST_F(BusSearchTest, FindsNothingForAMonitorWithTheEDIDOfAnother) {
  const auto panel = readAttribute("/sys/class/drm/card0-DP-3/edid").value_or("");
  writeConnector("card0-DP-2", "edid", panel);
  writeConnector("card0-DP-2", "status", "connected\n");
  displays.online.push_back({68, 0x0A56, 0x3003, 7, false});
  EXPECT_FALSE(isFound());
  writeConnector("card0-DP-2", "status", "disconnected\n");
  const auto original = readAttribute("/sys/class/drm/card0-HDMI-A-1/edid").value_or("");
  writeConnector("card0-HDMI-A-1", "edid", panel);
  EXPECT_FALSE(isFound()) << "that one has a bus";
  writeConnector("card0-HDMI-A-1", "edid", original);
}

TEST_F(BusSearchTest, FindsNothingWhenTwoAdaptersAnswerWithTheEDID) {
  const auto file = state / "stranger" / "edid";
  const auto own = readAttribute(file).value_or("");
  std::filesystem::copy_file(state / "chain" / "edid", file,
                             std::filesystem::copy_options::overwrite_existing);
  EXPECT_FALSE(isFound());
  std::ofstream(file, std::ios::binary) << own;
}

TEST_F(BusSearchTest, WaitsUntilMachineAndPanelAreAwake) {
  sleepGate.shut();
  EXPECT_FALSE(isFound());
  sleepGate.open();
  writeConnector("card0-DP-3", "enabled", "enabled\n");
  writeConnector("card0-DP-3", "dpms", "Off\n");
  EXPECT_FALSE(isFound());
  EXPECT_EQ(missingAccess.buses.first()->kind, BusTrouble::asleep);
  EXPECT_THAT(events("chain"), IsEmpty());
  writeConnector("card0-DP-3", "dpms", "On\n");
  EXPECT_TRUE(isFound());
  writeConnector("card0-DP-3", "dpms", "Off\n");
  EXPECT_TRUE(isFound());
  EXPECT_THAT(events("chain"), ElementsAre("read EDID 128"));
  writeConnector("card0-DP-3", "enabled", "disabled\n");
}

}  // namespace
}  // namespace brivane
