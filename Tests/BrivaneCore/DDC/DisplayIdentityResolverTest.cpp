#include <gtest/gtest.h>

#include "BrivaneCore/DDC/DisplayIdentityResolver.h"

namespace brivane {
namespace {

using Panels = std::map<std::string, PanelIdentity>;
using Displays = std::vector<DisplayIdentityResolver::ExternalDisplay>;
using Ports = std::set<std::string>;
using Answer = std::optional<std::string>;

constexpr PanelIdentity wanted{10, 20, 30};

Answer resolve(const Panels& panels, const Displays& displays, const Ports& ports,
               DisplayID target = 5, const PanelIdentity& identity = wanted) {
  return DisplayIdentityResolver::resolvePort(identity, target, panels, displays, ports);
}

TEST(DisplayIdentityResolver, TheOnlyPanelWithAllThreeNumbersGivesThePort) {
  const Panels panels{{"disp0", {10, 20, 31}}, {"disp1", wanted}, {"disp2", {10, 21, 30}}};
  EXPECT_EQ(resolve(panels, {}, {}), "disp1");
}

TEST(DisplayIdentityResolver, APanelWithoutASerialNumberMatchesByMakerAndModel) {
  const Panels panels{{"disp0", {11, 20, 30}}, {"disp1", {10, 20, 0}}, {"disp2", {10, 21, 30}}};
  EXPECT_EQ(resolve(panels, {}, {}), "disp1");
}

TEST(DisplayIdentityResolver, AnExactMatchWinsOverLooseOnes) {
  const Panels panels{{"disp0", {10, 20, 0}}, {"disp1", {10, 20, 1}}, {"disp2", wanted}};
  EXPECT_EQ(resolve(panels, {{5, 10, 20}, {6, 10, 20}, {7, 10, 20}}, {}), "disp2");
}

TEST(DisplayIdentityResolver, TheOnlyMonitorIsAtTheOnlyPortEvenWithoutItsPanel) {
  EXPECT_EQ(resolve({}, {{5, 10, 20}}, {"disp1"}), "disp1");
  EXPECT_EQ(resolve({{"disp0", {1, 2, 3}}}, {{5, 10, 20}}, {"disp1"}), "disp1");
}

TEST(DisplayIdentityResolver, WithoutAPanelMoreThanOneMonitorOrPortLeavesNoPort) {
  const Displays one{{5, 10, 20}};
  const Displays two{{5, 10, 20}, {6, 11, 21}};
  EXPECT_EQ(resolve({}, two, {"disp0", "disp1"}), std::nullopt);
  EXPECT_EQ(resolve({}, two, {"disp0"}), std::nullopt);
  EXPECT_EQ(resolve({}, one, {"disp0", "disp1"}), std::nullopt);
  EXPECT_EQ(resolve({}, one, {}), std::nullopt);
  EXPECT_EQ(resolve({}, {}, {"disp0"}), std::nullopt);
}

TEST(DisplayIdentityResolver, IdenticalMonitorsArePairedByNumberAndPortName) {
  const Panels panels{{"disp2", wanted}, {"disp0", wanted}, {"disp1", {9, 9, 9}}};
  const Displays displays{{8, 10, 20}, {6, 9, 9}, {5, 10, 20}, {4, 10, 21}};
  EXPECT_EQ(resolve(panels, displays, {}, 5), "disp0");
  EXPECT_EQ(resolve(panels, displays, {}, 8), "disp2");
}

TEST(DisplayIdentityResolver, SeveralLooseMatchesArePairedInTheSameWay) {
  const Panels panels{{"dispB", {10, 20, 1}}, {"dispA", {10, 20, 2}}, {"dispC", {10, 20, 3}}};
  const Displays displays{{9, 10, 20}, {7, 10, 20}, {8, 10, 20}};
  EXPECT_EQ(resolve(panels, displays, {}, 7), "dispA");
  EXPECT_EQ(resolve(panels, displays, {}, 8), "dispB");
  EXPECT_EQ(resolve(panels, displays, {}, 9), "dispC");
}

TEST(DisplayIdentityResolver, AnotherMakersPanelOfTheSameModelNumberIsNoMatch) {
  const Displays displays{{4, 11, 20}, {5, 10, 20}, {6, 10, 20}};
  const Panels exact{{"disp0", {11, 20, 30}}, {"disp1", wanted}};
  EXPECT_EQ(resolve(exact, displays, {}, 6), "disp1");
  const Panels loose{{"disp0", {11, 20, 0}}, {"disp1", {10, 20, 0}}};
  EXPECT_EQ(resolve(loose, displays, {}, 5), "disp1");
  const Panels identical{{"disp0", wanted}, {"disp1", wanted}};
  EXPECT_EQ(resolve(identical, displays, {}, 5), "disp0") << "the first of its make";
}

TEST(DisplayIdentityResolver, PortNamesSortAsTextAndNotAsNumbers) {
  const Panels panels{{"disp9", wanted}, {"disp10", wanted}};
  const Displays displays{{5, 10, 20}, {6, 10, 20}};
  EXPECT_EQ(resolve(panels, displays, {}, 5), "disp10");
  EXPECT_EQ(resolve(panels, displays, {}, 6), "disp9");
}

TEST(DisplayIdentityResolver, LooseMatchesDoNotCountBesideExactOnes) {
  const Panels panels{{"disp0", {10, 20, 1}}, {"disp1", wanted}, {"disp2", wanted}};
  const Displays displays{{5, 10, 20}, {6, 10, 20}, {7, 10, 20}};
  EXPECT_EQ(resolve(panels, displays, {}, 5), "disp1");
  EXPECT_EQ(resolve(panels, displays, {}, 6), "disp2");
  EXPECT_EQ(resolve(panels, displays, {}, 7), std::nullopt) << "more monitors than ports";
}

TEST(DisplayIdentityResolver, ATargetThatIsNotOnlineGetsNoneOfSeveralPorts) {
  const Panels panels{{"disp0", wanted}, {"disp1", wanted}};
  EXPECT_EQ(resolve(panels, {{6, 10, 20}, {7, 10, 20}}, {}, 5), std::nullopt);
}

TEST(DisplayIdentityResolver, AMatchedPortNeedsNoChannel) {
  EXPECT_EQ(resolve({{"disp0", wanted}}, {{5, 10, 20}}, {"disp7"}), "disp0");
}

}  // namespace
}  // namespace brivane
