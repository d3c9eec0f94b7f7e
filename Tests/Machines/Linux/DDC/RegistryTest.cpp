#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Machines/Linux/DDC/Registry.h"
#include "Tests/Support/EDIDBuilder.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t vendorBRV = 0x0A56;

class RegistryTest : public testing::Test {
 protected:
  /// A display on that connector.
  void add(DisplayID display, const std::string& name, const EDIDBuilder& panel) {
    std::filesystem::create_directories(drm / name);
    drm.write(name + "/status", "connected\n");
    const auto bytes = panel.bytes();
    drm.write(name + "/edid", {bytes.begin(), bytes.end()});
    std::filesystem::create_symlink("../i2c-5", drm / name / "ddc");
    const std::string output = name.substr(name.find('-') + 1);
    outputs.online.push_back(
        {.display = display, .name = output, .connectorNumber = {}, .panel = {}});
    outputs.names.push_back(output);
  }

  std::vector<std::shared_ptr<const RegistryEntry>> entries() {
    std::vector<std::shared_ptr<const RegistryEntry>> all;
    const auto pass = registry.allServices();
    while (auto entry = pass->next()) all.push_back(entry);
    return all;
  }

  std::vector<std::string> namesOfClass(const std::string& className) {
    std::vector<std::string> names;
    for (const auto& entry : entries()) {
      if (entry->className() == className) names.push_back(entry->name().value_or(""));
    }
    return names;
  }

  std::shared_ptr<const RegistryEntry> only(const std::string& className) {
    std::shared_ptr<const RegistryEntry> found;
    for (const auto& entry : entries()) {
      if (entry->className() != className) continue;
      EXPECT_EQ(found, nullptr);
      found = entry;
    }
    return found;
  }

  /// The panel's "ProductAttributes".
  PropertyValue::Dictionary product() {
    const auto attributes =
        only("DRMPanel")->property("DisplayAttributes").value_or(PropertyValue{});
    const auto* dictionary = attributes.dictionary();
    return dictionary ? *dictionary->at("ProductAttributes").dictionary()
                      : PropertyValue::Dictionary();
  }

  TemporaryFolder drm;
  Connectors connectors{drm.path};
  BusTroubles troubles;
  SleepGate sleepGate;
  BusSearch busSearch{connectors, sleepGate, drm / "none"};
  DescribedOutputs outputs;
  LinuxIORegistry registry{connectors, busSearch, troubles, [this] { return outputs; }};
};

TEST_F(RegistryTest, WithoutMonitorsThereIsOnlyTheRoot) {
  ASSERT_EQ(entries().size(), 1U);
  EXPECT_EQ(entries().front()->parent(), nullptr);
}

TEST_F(RegistryTest, APanelHasTheNumbersOfItsEDID) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 0x1001, .serial = 0xFFFFFFFE, .name = "Alpha"});
  const PropertyValue::Dictionary expected{
      {"LegacyManufacturerID", PropertyValue{std::int64_t{vendorBRV}}},
      {"ProductID", PropertyValue{std::int64_t{0x1001}}},
      {"SerialNumber", PropertyValue{std::int64_t{0xFFFFFFFE}}}};
  EXPECT_EQ(product(), expected);
}

TEST_F(RegistryTest, APanelWithoutASerialNumberHasNoEntryForIt) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  EXPECT_FALSE(product().contains("SerialNumber"));
}

TEST_F(RegistryTest, PanelAndProxyHangBelowTheController) {
  add(65, "card0-HDMI-A-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  for (const auto* className : {"DRMPanel", "DCPAVServiceProxy"}) {
    EXPECT_EQ(only(className)->parent()->name(), "disp-0000000065-card0-HDMI-A-1");
  }
  EXPECT_EQ(only("DCPAVServiceProxy")->property("Location"),
            PropertyValue{std::string("External")});
}

TEST_F(RegistryTest, APanelInsideTheComputerIsEmbedded) {
  add(65, "card0-eDP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  EXPECT_EQ(only("DCPAVServiceProxy")->property("Location"),
            PropertyValue{std::string("Embedded")});
}

TEST_F(RegistryTest, PortNamesSortAsDisplaysDo) {
  const EDIDBuilder panel{.vendor = "BRV", .model = 7, .serial = 0, .name = ""};
  add(1200, "card0-DP-1", panel);
  add(99, "card1-HDMI-A-1", panel);
  auto ports = namesOfClass("DRMConnector");
  std::sort(ports.begin(), ports.end());
  EXPECT_THAT(ports, ElementsAre("disp-0000000099-card1-HDMI-A-1", "disp-0000001200-card0-DP-1"));
}

TEST_F(RegistryTest, ADisplayWhoseConnectorIsUncertainHasAPanelAndNoProxy) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  outputs.online[0].name = "XWAYLAND0";
  EXPECT_THAT(namesOfClass("DRMConnector"), ElementsAre("disp-0000000065-XWAYLAND0"));
  EXPECT_EQ(namesOfClass("DRMPanel").size(), 1U);
  EXPECT_THAT(namesOfClass("DCPAVServiceProxy"), IsEmpty());
  EXPECT_EQ(troubles.first()->monitor, "XWAYLAND0");
  EXPECT_EQ(troubles.first()->kind, BusTrouble::noBus);
}

TEST_F(RegistryTest, ABuiltInPanelWithoutABusIsNoTrouble) {
  add(65, "card0-eDP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  std::filesystem::remove(drm / "card0-eDP-1" / "ddc");
  outputs.online[0].isBuiltIn = true;
  EXPECT_EQ(entries().size(), 3U);
  EXPECT_FALSE(troubles.first());
}

TEST_F(RegistryTest, AConnectorWithoutAnOnlineDisplayIsLeftOut) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  outputs.online.clear();
  EXPECT_EQ(entries().size(), 1U);
}

TEST_F(RegistryTest, AMonitorWithoutAUsableEDIDHasTheNumbersOfItsDisplayAndItsProxy) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  for (const auto* bytes : {"", "rubbish"}) {
    drm.write("card0-DP-1/edid", bytes);
    EXPECT_EQ(product().at("SerialNumber"),
              PropertyValue{std::int64_t{identityOf(outputs.online[0], nullptr).serial}});
    EXPECT_EQ(namesOfClass("DCPAVServiceProxy").size(), 1U) << bytes;
  }
}

TEST_F(RegistryTest, AMonitorWithoutABusHasNoProxy) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  std::filesystem::remove(drm / "card0-DP-1" / "ddc");
  EXPECT_THAT(namesOfClass("DCPAVServiceProxy"), IsEmpty());
  EXPECT_EQ(namesOfClass("DRMPanel").size(), 1U);
}

TEST_F(RegistryTest, AnEntryStaysReadableAfterItsMonitorIsGone) {
  add(65, "card0-DP-1", {.vendor = "BRV", .model = 7, .serial = 0, .name = ""});
  const auto panel = only("DRMPanel");
  std::filesystem::remove_all(drm / "card0-DP-1");
  EXPECT_TRUE(panel->property("DisplayAttributes").has_value());
  EXPECT_EQ(panel->parent()->parent()->name(), "Root");
  EXPECT_EQ(panel->property("Location"), std::nullopt);
}

}  // namespace
}  // namespace brivane
