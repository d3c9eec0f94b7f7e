// From displays to channels: connectors, registry and bus under Core's own discovery.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Machines/Linux/System/Sysfs.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Optional;

constexpr std::uint32_t vendorBRV = 0x0A56;

class DiscoveryTest : public BusTest {
 protected:
  std::optional<VCPReading> read(DisplayID display) {
    const auto channel = found.handle(display);
    return channel ? channel->getVCP(0x10) : std::nullopt;
  }

  DisplayRegistry found{displays, registry, loader, runtime};
};

TEST_F(DiscoveryTest, EachMonitorIsReachedThroughItsOwnConnector) {
  EXPECT_THAT(read(alpha), Optional(VCPReading{50, 100}));
  EXPECT_THAT(read(beta), Optional(VCPReading{255, 255}));
}

TEST_F(DiscoveryTest, TheLaptopsPanelHasNoChannel) {
  EXPECT_EQ(found.handle(laptop), nullptr);
  found.scan();
  EXPECT_THAT(found.handlesByPort, ElementsAre(Key("disp-0000000065-card0-HDMI-A-1"),
                                               Key("disp-0000000066-card0-DP-1")));
  EXPECT_THAT(events("eDP-1"), IsEmpty());
}

TEST_F(DiscoveryTest, ADisplayPortMonitorIsReachedThroughItsOwnChannelNotThroughThePins) {
  ASSERT_THAT(read(beta), Optional(VCPReading{255, 255}));
  EXPECT_THAT(events("DP-1-pins"), IsEmpty());
}

TEST_F(DiscoveryTest, LookingForMonitorsTouchesNoBus) {
  found.scan();
  EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
  EXPECT_THAT(events("DP-1"), IsEmpty());
}

TEST_F(DiscoveryTest, AnUnpluggedMonitorHasNoChannel) {
  writeConnector("card0-DP-1", "status", "disconnected\n");
  displays.online.pop_back();
  found.scan();
  EXPECT_THAT(found.handlesByPort, ElementsAre(Key("disp-0000000065-card0-HDMI-A-1")));
}

TEST_F(DiscoveryTest, IdenticalMonitorsAreToldApartInTheOrderOfTheWindowSystem) {
  const auto panel = readAttribute("/sys/class/drm/card0-DP-1/edid").value_or("");
  const auto original = readAttribute("/sys/class/drm/card0-HDMI-A-1/edid").value_or("");
  writeConnector("card0-HDMI-A-1", "edid", panel);
  displays.online[1] = {alpha, vendorBRV, 0x2002, 0, false};
  EXPECT_THAT(read(alpha), Optional(VCPReading{50, 100}));
  EXPECT_THAT(read(beta), Optional(VCPReading{255, 255}));
  writeConnector("card0-HDMI-A-1", "edid", original);
}

TEST_F(DiscoveryTest, ADisplayOfWhichNothingIsKnownHasNoChannelEvenAsTheOnlyOne) {
  writeConnector("card0-DP-1", "status", "disconnected\n");
  displays.online = {{alpha, 0, 0, 0, false}};
  EXPECT_EQ(found.handle(alpha), nullptr);
}

TEST_F(DiscoveryTest, ADisplayOfTheSameModelWhoseConnectorIsUncertainDrivesNobodyElsesMonitor) {
  constexpr DisplayID stranger = 60;
  displays.online.push_back({stranger, vendorBRV, 0x1001, 4711, false});
  EXPECT_EQ(found.handle(stranger), nullptr);
  EXPECT_THAT(read(alpha), Optional(VCPReading{50, 100}));
}

TEST_F(DiscoveryTest, ForeignRegistryEntriesHaveNoService) {
  const FakeRegistryEntry foreign;
  EXPECT_EQ(bus.createService(foreign), nullptr);
  LinuxRegistryEntry controller;
  EXPECT_EQ(bus.createService(controller), nullptr);
}

TEST_F(DiscoveryTest, TheBuiltInPanelIsDrivenByTheFirmwaresBacklight) {
  const AppleDisplayBackend services(loader, displays);
  EXPECT_TRUE(services.isAvailable());
  EXPECT_TRUE(services.canControl(laptop));
  EXPECT_EQ(services.read(laptop), 40);
  EXPECT_TRUE(services.write(80, laptop));
  EXPECT_EQ(readTextAttribute("/sys/class/backlight/acpi_video0/brightness"), "12");
  EXPECT_EQ(readTextAttribute("/sys/class/backlight/intel_backlight/brightness"), "400");
  EXPECT_FALSE(services.canControl(alpha));
}

TEST_F(DiscoveryTest, WithoutABacklightDisplayServicesDriveNoDisplay) {
  const VanishedBacklights all;
  const AppleDisplayBackend services(loader, displays);
  for (const DisplayID display : {laptop, alpha}) {
    EXPECT_FALSE(services.canControl(display));
    EXPECT_EQ(services.read(display), std::nullopt);
    EXPECT_FALSE(services.write(50, display));
  }
}

TEST_F(DiscoveryTest, NamesAreFoundInTheirOwnLibraryAndAmongAll) {
  const auto frameworks = std::string("/System/Library/");
  const auto ioKit = loader.open(frameworks + "Frameworks/IOKit.framework/IOKit", lazyBinding);
  const auto services = loader.open(
      frameworks + "PrivateFrameworks/DisplayServices.framework/DisplayServices", lazyBinding);
  ASSERT_NE(ioKit, 0);
  ASSERT_NE(services, 0);
  for (const auto* name :
       {"IOAVServiceCreateWithService", "IOAVServiceWriteI2C", "IOAVServiceReadI2C"}) {
    EXPECT_NE(loader.find(ioKit, name).index(), 0U) << name;
    EXPECT_NE(loader.find(globalNamespace, name).index(), 0U) << name;
    EXPECT_EQ(loader.find(services, name).index(), 0U) << name;
  }
  for (const auto* name : {"DisplayServicesGetBrightness", "DisplayServicesSetBrightness",
                           "DisplayServicesCanChangeBrightness"}) {
    EXPECT_NE(loader.find(services, name).index(), 0U) << name;
    EXPECT_NE(loader.find(globalNamespace, name).index(), 0U) << name;
    EXPECT_EQ(loader.find(ioKit, name).index(), 0U) << name;
  }
  EXPECT_EQ(loader.find(ioKit, "IOAVServiceNoSuchThing").index(), 0U);
  EXPECT_EQ(loader.find(0, "IOAVServiceReadI2C").index(), 0U);
  EXPECT_EQ(loader.open("/usr/lib/libc.so", lazyBinding), 0);
}

}  // namespace
}  // namespace brivane
