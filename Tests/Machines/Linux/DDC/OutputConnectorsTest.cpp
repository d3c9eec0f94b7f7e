#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Linux/DDC/OutputConnectors.h"
#include "Tests/Support/EDIDBuilder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const EDIDBuilder twin{.vendor = "BRV", .model = 7, .serial = 0, .name = "Twin"};
const EDIDBuilder other{.vendor = "BRV", .model = 8, .serial = 1, .name = "Other"};

Connector plugged(const std::string& name, std::int64_t number,
                  const std::optional<EDIDBuilder>& panel = twin) {
  const auto bytes = panel ? panel->bytes() : std::vector<std::uint8_t>();
  Connector connector;
  connector.name = name;
  connector.number = number;
  connector.edid = {bytes.begin(), bytes.end()};
  connector.isConnected = true;
  connector.isEnabled = true;
  return connector;
}

PanelIdentity identity(const EDIDBuilder& panel) {
  return *plugged("", 0, panel).panel();
}

DescribedOutput output(DisplayID display, const std::string& name,
                       std::optional<std::int64_t> number = std::nullopt,
                       const std::optional<EDIDBuilder>& panel = twin) {
  return {.display = display,
          .name = name,
          .connectorNumber = number,
          .panel = panel ? std::optional(identity(*panel)) : std::nullopt};
}

DescribedOutputs server(const std::vector<DescribedOutput>& online,
                        std::vector<std::string> namesOfOthers = {}) {
  for (const DescribedOutput& each : online) namesOfOthers.push_back(each.name);
  return {online, namesOfOthers};
}

std::map<DisplayID, std::string> found(const DescribedOutputs& outputs,
                                       const std::vector<Connector>& connectors) {
  std::map<DisplayID, std::string> names;
  for (const auto& [display, connector] : connectorsOf(outputs, connectors)) {
    names[display] = connector.name;
  }
  return names;
}

TEST(OutputConnectors, AreThoseOfTheServersConnectorNumbersForTwinsToo) {
  const auto outputs = server({output(1, "A", 110), output(2, "B", 93)});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-1", 93), plugged("card0-DP-2", 110)}),
              ElementsAre(testing::Pair(1, "card0-DP-2"), testing::Pair(2, "card0-DP-1")));
}

TEST(OutputConnectors, AreThoseOfTheNamesForTwinsToo) {
  const auto outputs = server({output(1, "DP-2"), output(2, "HDMI-1")});
  EXPECT_THAT(found(outputs, {plugged("card0-HDMI-A-1", 93), plugged("card0-DP-2", 110)}),
              ElementsAre(testing::Pair(1, "card0-DP-2"), testing::Pair(2, "card0-HDMI-A-1")));
}

TEST(OutputConnectors, AreFoundForOutputsWithoutAnEDID) {
  const auto outputs =
      server({output(1, "HDMI-A-1", {}, std::nullopt), output(2, "X", 7, std::nullopt)});
  EXPECT_THAT(found(server({outputs.online[0]}), {plugged("card0-HDMI-A-1", 93, std::nullopt)}),
              ElementsAre(testing::Pair(1, "card0-HDMI-A-1")));
  EXPECT_THAT(found(server({outputs.online[1]}), {plugged("card0-VGA-1", 7, other)}),
              ElementsAre(testing::Pair(2, "card0-VGA-1")));
}

TEST(OutputConnectors, WithANumberOnTwoCardsAreThoseOfTheEDIDOrNone) {
  const std::vector cards = {plugged("card0-DP-1", 93, other), plugged("card1-DP-1", 93)};
  EXPECT_THAT(found(server({output(1, "DP-1", 93)}), cards),
              ElementsAre(testing::Pair(1, "card1-DP-1")));
  EXPECT_THAT(found(server({output(1, "DP-1", 93, std::nullopt)}), cards), IsEmpty());
}

TEST(OutputConnectors, AreNeverThoseOfAnotherEDIDNorElsewhereThanWhereTheServerSays) {
  const std::vector swapped = {plugged("card0-DP-1", 93, other), plugged("card0-DP-2", 110)};
  EXPECT_THAT(found(server({output(1, "DP-1", 93)}), swapped), IsEmpty());
  EXPECT_THAT(found(server({output(1, "DP-1")}), swapped), IsEmpty());
}

TEST(OutputConnectors, AreThoseOfTheNamesWhereTheKernelHasNoNumbers) {
  const auto outputs = server({output(1, "DP-2", 110), output(2, "DP-10", 93)});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-10", 0), plugged("card0-DP-2", 0)}),
              ElementsAre(testing::Pair(1, "card0-DP-2"), testing::Pair(2, "card0-DP-10")));
  const auto unnamed = server({output(1, "A"), output(2, "B")});
  EXPECT_THAT(found(unnamed, {plugged("card0-DP-10", 0), plugged("card0-DP-2", 0)}), IsEmpty());
}

TEST(OutputConnectors, WithANumberOrNameThatAnEmptySocketHasTooAreThoseOfTheEDIDOrNone) {
  auto empty = plugged("card1-DP-1", 93, std::nullopt);
  empty.isConnected = false;
  const std::vector cards = {plugged("card0-DP-1", 93), empty};
  EXPECT_THAT(found(server({output(1, "DP-1", 93)}), cards),
              ElementsAre(testing::Pair(1, "card0-DP-1")));
  EXPECT_THAT(found(server({output(1, "DP-1", {}, std::nullopt)}), cards), IsEmpty());
}

TEST(OutputConnectors, ThatTwoDisplaysWouldHaveAreNobodys) {
  const auto outputs = server({output(1, "DP-1", 93), output(2, "DP-1", 93, std::nullopt)});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-1", 93)}), IsEmpty());
}

TEST(OutputConnectors, AreNotThoseOfNamesWhereTheServerHasNamesOfItsOwn) {
  // A driver that counts from 0: its "DP-1" is the kernel's "DP-2".
  const std::vector connectors = {plugged("card0-DP-1", 93), plugged("card0-DP-2", 110)};
  const auto outputs = server({output(1, "DP-1")}, {"DP-0"});
  EXPECT_THAT(found(outputs, connectors), IsEmpty());
}

TEST(OutputConnectors, OfUnnamedOutputsAreThoseOfTheEDID) {
  const auto outputs = server({output(1, "DUMMY0", {}, other), output(2, "DUMMY1")});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-1", 93), plugged("card0-DP-2", 110, other)}),
              ElementsAre(testing::Pair(1, "card0-DP-2"), testing::Pair(2, "card0-DP-1")));
}

TEST(OutputConnectors, OfUnnamedTwinsArePairedInOrder) {
  const auto outputs = server({output(9, "DUMMY1"), output(5, "DUMMY0")});
  EXPECT_THAT(found(outputs, {plugged("card1-DP-1", 80), plugged("card0-DP-1", 110),
                              plugged("card0-DP-2", 93)}),
              IsEmpty());
  EXPECT_THAT(found(outputs, {plugged("card1-DP-1", 80), plugged("card0-DP-1", 110)}),
              ElementsAre(testing::Pair(5, "card0-DP-1"), testing::Pair(9, "card1-DP-1")));
}

TEST(OutputConnectors, OfAnUnnamedTwinIsTheOnlyOneInUseOrNone) {
  const auto outputs = server({output(1, "DUMMY0")});
  std::vector connectors = {plugged("card0-DP-1", 93), plugged("card0-DP-2", 110)};
  EXPECT_THAT(found(outputs, connectors), IsEmpty());
  connectors[0].isEnabled = false;
  EXPECT_THAT(found(outputs, connectors), ElementsAre(testing::Pair(1, "card0-DP-2")));
}

TEST(OutputConnectors, ThatANamedTwinHasAreLeftToNobodyElse) {
  const auto outputs = server({output(1, "DUMMY0"), output(2, "DUMMY1", 93)});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-1", 93), plugged("card0-DP-2", 110)}),
              ElementsAre(testing::Pair(1, "card0-DP-2"), testing::Pair(2, "card0-DP-1")));
}

TEST(OutputConnectors, WithNothingPluggedInAreNobodys) {
  auto empty = plugged("card0-DP-1", 93);
  empty.isConnected = false;
  EXPECT_THAT(found(server({output(1, "DP-1", 93)}), {empty}), IsEmpty());
}

TEST(OutputConnectors, AreUnknownForAnOutputOfWhichNothingIsKnown) {
  const auto outputs = server({output(1, "XWAYLAND0", {}, std::nullopt)});
  EXPECT_THAT(found(outputs, {plugged("card0-DP-1", 93)}), IsEmpty());
}

TEST(IdentityOfOutputs, IsTheEDIDsElseTheConnectorsElseTheNames) {
  const auto connector = plugged("card0-DP-1", 93, other);
  EXPECT_EQ(identityOf(output(1, "DP-1"), &connector), identity(twin));
  EXPECT_EQ(identityOf(output(1, "DP-1", {}, std::nullopt), &connector), identity(other));
  const PanelIdentity one = identityOf(output(1, "DP-1", {}, std::nullopt), nullptr);
  const PanelIdentity two = identityOf(output(2, "DP-2", {}, std::nullopt), nullptr);
  EXPECT_NE(one, two);
  EXPECT_EQ(one, (PanelIdentity{0, 0, one.serial}));
  EXPECT_NE(one.serial, 0U);
}

}  // namespace
}  // namespace brivane
