#include <gtest/gtest.h>

#include "BrivaneCore/DDC/IORegistryScanning.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using Dictionary = PropertyValue::Dictionary;
using PanelNode = IORegistryScanning::PanelNode;

PropertyValue number(std::int64_t value) {
  return {value};
}
PropertyValue text(const std::string& value) {
  return {value};
}

/// An entry below `count` others that are named "node", below one named `top`.
std::shared_ptr<FakeRegistryEntry> below(const std::string& top, int count) {
  auto entry = std::make_shared<FakeRegistryEntry>();
  entry->ownName = top;
  for (int i = 0; i <= count; ++i) {
    auto child = std::make_shared<FakeRegistryEntry>();
    child->above = entry;
    entry = child;
  }
  return entry;
}

std::shared_ptr<FakeRegistryEntry> panelWith(const Dictionary& product) {
  auto panel = below("disp0", 0);
  panel->properties["DisplayAttributes"] = {Dictionary{{"ProductAttributes", {product}}}};
  return panel;
}

std::shared_ptr<FakeRegistryEntry> proxyBelow(const std::string& name) {
  auto proxy = below(name, 0);
  proxy->ownClass = "DCPAVServiceProxy";
  proxy->properties["Location"] = text("External");
  return proxy;
}

TEST(IORegistryScanning, APanelIsReadWithItsIdentityAndItsPort) {
  const auto panel = panelWith({{"LegacyManufacturerID", number(4268)},
                                {"ProductID", number(41156)},
                                {"SerialNumber", number(810635604)}});
  EXPECT_EQ(IORegistryScanning::panelNode(*panel), (PanelNode{{4268, 41156, 810635604}, "disp0"}));
}

TEST(IORegistryScanning, NumbersMayBeFractionsAndKeepTheirLowThirtyTwoBits) {
  const auto panel = panelWith({{"LegacyManufacturerID", {4268.0}},
                                {"ProductID", number(41156)},
                                {"SerialNumber", number((std::int64_t{1} << 32) + 7)}});
  EXPECT_EQ(IORegistryScanning::panelNode(*panel), (PanelNode{{4268, 41156, 7}, "disp0"}));
}

TEST(IORegistryScanning, APanelWithoutANumericSerialNumberHasSerialZero) {
  const Dictionary product{{"LegacyManufacturerID", number(1)}, {"ProductID", number(2)}};
  EXPECT_EQ(IORegistryScanning::panelNode(*panelWith(product)), (PanelNode{{1, 2, 0}, "disp0"}));
  auto named = product;
  named["SerialNumber"] = text("12");
  EXPECT_EQ(IORegistryScanning::panelNode(*panelWith(named)), (PanelNode{{1, 2, 0}, "disp0"}));
}

TEST(IORegistryScanning, APanelNeedsMakerAndModelAsNumbers) {
  const Dictionary incomplete[] = {
      {},
      {{"LegacyManufacturerID", number(1)}},
      {{"ProductID", number(2)}},
      {{"LegacyManufacturerID", text("1")}, {"ProductID", number(2)}},
      {{"LegacyManufacturerID", number(1)}, {"ProductID", {true}}},
  };
  for (const Dictionary& product : incomplete) {
    EXPECT_EQ(IORegistryScanning::panelNode(*panelWith(product)), std::nullopt);
  }
}

TEST(IORegistryScanning, APanelNeedsItsAttributesAsDictionaries) {
  const auto entry = below("disp0", 0);
  EXPECT_EQ(IORegistryScanning::panelNode(*entry), std::nullopt);
  const PropertyValue product{
      Dictionary{{"LegacyManufacturerID", number(1)}, {"ProductID", number(2)}}};
  for (const PropertyValue& attributes :
       {text("none"), PropertyValue{Dictionary{}}, product,
        PropertyValue{Dictionary{{"ProductAttributes", number(1)}}}}) {
    entry->properties["DisplayAttributes"] = attributes;
    EXPECT_EQ(IORegistryScanning::panelNode(*entry), std::nullopt);
  }
  entry->properties["DisplayAttributes"] = {Dictionary{{"ProductAttributes", product}}};
  EXPECT_NE(IORegistryScanning::panelNode(*entry), std::nullopt);
}

TEST(IORegistryScanning, APanelNeedsAPort) {
  const auto panel = panelWith({{"LegacyManufacturerID", number(1)}, {"ProductID", number(2)}});
  panel->above->ownName = "elsewhere";
  EXPECT_EQ(IORegistryScanning::panelNode(*panel), std::nullopt);
}

TEST(IORegistryScanning, AControllerIsFoundUpToEightEntriesAboveAPanel) {
  for (int between = 0; between <= 7; ++between) {
    EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("dispext3", between)), "dispext3")
        << between << " entries between";
  }
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("dispext3", 8)), std::nullopt);
}

TEST(IORegistryScanning, TheNearestControllerIsThePort) {
  const auto entry = below("disp0", 3);
  entry->above->above->ownName = "disp1";
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*entry), "disp1");
}

TEST(IORegistryScanning, APanelsOwnNameIsNotItsPort) {
  const auto entry = below("node", 3);
  entry->ownName = "disp0";
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*entry), std::nullopt);
}

TEST(IORegistryScanning, AnEntryWithoutANameIsSkippedOnTheWayUp) {
  const auto entry = below("disp0", 1);
  entry->above->ownName = std::nullopt;
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*entry), "disp0");
}

TEST(IORegistryScanning, APortsNameBeginsWithDispInSmallLetters) {
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("Disp0", 0)), std::nullopt);
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("mydisp0", 0)), std::nullopt);
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("dis", 0)), std::nullopt);
  EXPECT_EQ(IORegistryScanning::portOfDisplayNode(*below("disp", 0)), "disp");
}

TEST(IORegistryScanning, AProxysPortIsTheFirstPieceOfItsParentsName) {
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"disp0", "disp0"},          {"dispext1:dcpav-service-epic:0", "dispext1"},
      {":disp0:x", "disp0"},       {"::disp0", "disp0"},
      {"dcp:disp0", std::nullopt}, {"AppleDCP", std::nullopt},
      {":", std::nullopt},         {"", std::nullopt},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(IORegistryScanning::portOfAVProxy(*below(name, 0)), expected) << name;
  }
}

TEST(IORegistryScanning, OnlyAProxysDirectParentCounts) {
  EXPECT_EQ(IORegistryScanning::portOfAVProxy(*below("disp0", 1)), std::nullopt);
  EXPECT_EQ(IORegistryScanning::portOfAVProxy(FakeRegistryEntry()), std::nullopt);
  const auto entry = below("disp0", 0);
  entry->above->ownName = std::nullopt;
  EXPECT_EQ(IORegistryScanning::portOfAVProxy(*entry), std::nullopt);
}

TEST(IORegistryScanning, AnExternalProxyIsRecognisedByClassAndLocation) {
  const auto proxy = proxyBelow("disp0:dcpav");
  EXPECT_EQ(IORegistryScanning::externalAVProxyPort(*proxy), "disp0");
  for (const std::optional<std::string>& other :
       {std::optional<std::string>("DCPAVServiceProxyUserClient"), std::optional<std::string>()}) {
    const auto stranger = proxyBelow("disp0:dcpav");
    stranger->ownClass = other;
    EXPECT_EQ(IORegistryScanning::externalAVProxyPort(*stranger), std::nullopt);
  }
  for (const PropertyValue& location : {text("Embedded"), text("external"), number(1)}) {
    proxy->properties["Location"] = location;
    EXPECT_EQ(IORegistryScanning::externalAVProxyPort(*proxy), std::nullopt);
  }
  proxy->properties.clear();
  EXPECT_EQ(IORegistryScanning::externalAVProxyPort(*proxy), std::nullopt);
}

}  // namespace
}  // namespace brivane
