// The whole machine's advice on missing buses and permissions, after calls that have met them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

#include "BrivaneCore/DDC/IOAVBridge.h"
#include "Machines/Linux/Machine.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/OrdinaryUser.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::Optional;

class LinuxMachineTest : public BusWorld {
 protected:
  void SetUp() override {
    BusWorld::SetUp();
    unsetenv("DISPLAY");
  }

  /// Writes once to each monitor of the world; returns how many failed.
  static int failedWrites(LinuxMachine& machine) {
    const IOAVBridge bridge(machine.symbols());
    int failed = 0;
    for (const auto& channel : {I2CChannel{"card0-eDP-1", 4}, I2CChannel{"card0-HDMI-A-1", 5},
                                I2CChannel{"card0-DP-1", 6}}) {
      LinuxRegistryEntry proxy;
      proxy.channel = channel;
      const auto service = bridge.createWithService()(proxy);
      constexpr std::array<std::uint8_t, 4> getLuminance = {0x82, 0x01, 0x10, 0xFD};
      if (bridge.writeI2C()(*service, 0x37, 0x51, getLuminance) != 0) ++failed;
    }
    return failed;
  }
};

TEST_F(LinuxMachineTest, SaysNothingWhileAllItsCallsGoWell) {
  LinuxMachine machine;
  EXPECT_EQ(failedWrites(machine), 0);
  EXPECT_EQ(machine.advice(), std::nullopt);
}

TEST_F(LinuxMachineTest, WithoutABusAdvisesToLoadTheDriver) {
  LinuxMachine machine;
  const VanishedBuses all;
  EXPECT_EQ(machine.advice(), std::nullopt);
  EXPECT_EQ(failedWrites(machine), 3);
  EXPECT_THAT(machine.advice(), Optional(HasSubstr("modprobe i2c-dev")));
}

TEST_F(LinuxMachineTest, WithoutPermissionForTheBusesAdvisesOnTheRule) {
  const Forbidden laptop("/dev/i2c-4");
  const Forbidden alpha("/dev/i2c-5");
  const Forbidden beta("/dev/i2c-6");
  EXPECT_TRUE(holdsForOrdinaryUser([] {
    LinuxMachine machine;
    return failedWrites(machine) == 3 &&
           machine.advice().value_or("").find("udev rule") != std::string::npos;
  }));
}

TEST_F(LinuxMachineTest, WithoutPermissionForAKeymapAdvisesOnTheTool) {
  const Forbidden keyboard("/dev/input/event3");
  EXPECT_TRUE(holdsForOrdinaryUser([] {
    std::string session = "/tmp/brivane-session-XXXXXX";
    if (mkdtemp(session.data()) == nullptr) return false;
    setenv("XDG_RUNTIME_DIR", session.c_str(), 1);
    LinuxMachine machine;
    machine.processes().run("/usr/bin/hidutil",
                            {"property", "--set",
                             R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":51539607663,)"
                             R"("HIDKeyboardModifierMappingDst":30064771182}]})"});
    std::filesystem::remove_all(session);
    return machine.advice().value_or("").find("brivane-hidutil") != std::string::npos;
  }));
}

}  // namespace
}  // namespace brivane
