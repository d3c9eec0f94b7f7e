#include <gtest/gtest.h>

#include <filesystem>

#include "Machines/Linux/DDC/Connectors.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

Connector connectorNamed(const std::string& name) {
  Connector connector;
  connector.name = name;
  return connector;
}

/// A folder of connectors like the kernel's.
class ConnectorsTest : public testing::Test {
 protected:
  void add(const std::string& name, const std::string& status) {
    std::filesystem::create_directories(drm / name);
    drm.write(name + "/status", status + "\n");
  }
  void linkBus(const std::string& name, const std::string& target) {
    std::filesystem::create_symlink(target, drm / name / "ddc");
  }
  void addOwnBus(const std::string& name, const std::string& bus) {
    std::filesystem::create_directories(drm / name / bus);
  }
  Connector only() {
    auto all = connectors.all();
    std::erase_if(all, [](const Connector& connector) { return !connector.isConnected; });
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? Connector{} : all.front();
  }

  TemporaryFolder drm;
  Connectors connectors{drm.path};
};

TEST_F(ConnectorsTest, OnlySocketsWithSomethingPluggedInAreConnected) {
  add("card0-HDMI-A-1", "connected");
  add("card0-HDMI-A-2", "disconnected");
  add("card0-DP-1", "unknown");
  std::filesystem::create_directories(drm / "card0");
  std::filesystem::create_directories(drm / "renderD128");
  EXPECT_EQ(only().name, "card0-HDMI-A-1");
  EXPECT_EQ(connectors.all().size(), 3U);
}

TEST_F(ConnectorsTest, AConnectorIsEnabledWhileTheKernelShowsAPictureOnIt) {
  add("card0-DP-1", "connected");
  EXPECT_FALSE(only().isEnabled);
  drm.write("card0-DP-1/enabled", "disabled\n");
  EXPECT_FALSE(only().isEnabled);
  drm.write("card0-DP-1/enabled", "enabled\n");
  EXPECT_TRUE(only().isEnabled);
}

TEST_F(ConnectorsTest, WithoutAGraphicsCardThereIsNone) {
  EXPECT_TRUE(Connectors(drm / "none").all().empty());
}

TEST_F(ConnectorsTest, TheDdcLinkLeadsToTheBus) {
  add("card0-HDMI-A-1", "connected");
  linkBus("card0-HDMI-A-1", "../../../i2c-15");
  EXPECT_EQ(only().bus, 15U);
}

TEST_F(ConnectorsTest, AChannelOfTheConnectorsOwnComesBeforeTheLink) {
  add("card0-DP-1", "connected");
  linkBus("card0-DP-1", "../../../i2c-3");
  addOwnBus("card0-DP-1", "i2c-7");
  EXPECT_EQ(only().bus, 7U);
}

TEST_F(ConnectorsTest, AFolderThatOnlyLooksLikeABusIsIgnored) {
  add("card0-DP-1", "connected");
  addOwnBus("card0-DP-1", "i2c-");
  addOwnBus("card0-DP-1", "i2c-7x");
  addOwnBus("card0-DP-1", "drm_dp_aux0");
  linkBus("card0-DP-1", "../../../spi-3");
  EXPECT_EQ(only().bus, std::nullopt);
}

TEST_F(ConnectorsTest, TheEDIDIsReadAsItsBytes) {
  add("card0-DP-1", "connected");
  const std::string bytes("\0\xFF\n\0", 4);
  drm.write("card0-DP-1/edid", bytes);
  drm.write("card0-DP-1/connector_id", "93\n");
  EXPECT_EQ(only().edid, bytes);
  EXPECT_EQ(only().number, 93);
}

TEST_F(ConnectorsTest, WithoutEDIDAndNumberTheseAreEmpty) {
  add("card0-DP-1", "connected");
  EXPECT_EQ(only().edid, "");
  EXPECT_EQ(only().number, 0);
}

TEST_F(ConnectorsTest, PanelsInsideTheComputerAreInternal) {
  for (const auto* name : {"card0-eDP-1", "card1-LVDS-1", "card0-DSI-2"}) {
    EXPECT_TRUE(connectorNamed(name).isInternal()) << name;
  }
  for (const auto* name : {"card0-DP-1", "card0-HDMI-A-1", "card0-DVI-D-1", "card0-VGA-1"}) {
    EXPECT_FALSE(connectorNamed(name).isInternal()) << name;
  }
}

TEST_F(ConnectorsTest, APanelIsAsleepInEveryStandByState) {
  add("card0-DP-1", "connected");
  drm.write("card0-DP-1/enabled", "enabled\n");
  for (const auto* state : {"Off", "Standby", "Suspend"}) {
    drm.write("card0-DP-1/dpms", std::string(state) + "\n");
    EXPECT_TRUE(connectors.isAsleep("card0-DP-1")) << state;
  }
  drm.write("card0-DP-1/dpms", "On\n");
  EXPECT_FALSE(connectors.isAsleep("card0-DP-1"));
}

TEST_F(ConnectorsTest, AConnectorThatTheKernelDoesNotDriveIsNotAsleep) {
  add("card0-DP-1", "connected");
  drm.write("card0-DP-1/dpms", "Off\n");
  drm.write("card0-DP-1/enabled", "disabled\n");
  EXPECT_FALSE(connectors.isAsleep("card0-DP-1"));
}

TEST_F(ConnectorsTest, AConnectorThatSaysNothingOrIsGoneIsNotAsleep) {
  add("card0-DP-1", "connected");
  EXPECT_FALSE(connectors.isAsleep("card0-DP-1"));
  EXPECT_FALSE(connectors.isAsleep("card0-DP-9"));
}

}  // namespace
}  // namespace brivane
