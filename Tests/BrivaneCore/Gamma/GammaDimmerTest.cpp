#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Gamma/GammaDimmer.h"
#include "Tests/Support/GammaBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::IsEmpty;

struct GammaDimmerTest : testing::Test, GammaBench {
  GammaDimmer dimmer{baselines, io};
};

TEST_F(GammaDimmerTest, SupportsDisplaysThatHaveAGammaTable) {
  addTable(1, {0, 1});
  EXPECT_TRUE(dimmer.isSupported(1));
  EXPECT_FALSE(dimmer.isSupported(2));
}

TEST_F(GammaDimmerTest, DarkensEvenlyDownTo18PercentOfTheBaseline) {
  const std::map<std::int64_t, float> factors = {{1, 0.9918F}, {25, 0.795F}, {40, 0.672F},
                                                 {50, 0.59F},  {75, 0.385F}, {100, 0.18F}};
  addTable(1, {0, 0.5F, 1});
  for (const auto& [level, factor] : factors) {
    EXPECT_TRUE(dimmer.apply(level, 1));
    EXPECT_THAT(curve(1), ElementsAre(0, FloatEq(factor / 2), FloatEq(factor))) << level;
    EXPECT_EQ(dimmer.amount(1), level);
  }
}

// Samples at which the factor's last bits show: with 0.82 itself each would come out one float
// higher.
TEST_F(GammaDimmerTest, TheSpanOfFactorsIsOneMinus18HundredthsAsDoublesGiveIt) {
  EXPECT_EQ(1 - 0.18, 0.8200000000000001);
  addTable(1, {0x1.dc3ef2p-1F, 0x1.000022p-1F, 0x1.000054p-1F});
  dimmer.apply(4, 1);
  EXPECT_EQ(curve(1)[0], 0x1.ccap-1F);
  dimmer.apply(10, 1);
  EXPECT_EQ(curve(1)[1], 0x1.d60456p-2F);
  dimmer.apply(25, 1);
  EXPECT_EQ(curve(1)[2], 0x1.970ac2p-2F);
}

TEST_F(GammaDimmerTest, ScalesEachChannelOfTheBaselineByTheSameFactor) {
  tables.capacities[1] = 2;
  tables.tables[1] = {{0, 1}, {0.1F, 0.8F}, {0, 0.5F}};
  dimmer.apply(50, 1);
  const auto& table = tables.tables[1];
  EXPECT_THAT(table.red, ElementsAre(0, FloatEq(0.59F)));
  EXPECT_THAT(table.green, ElementsAre(FloatEq(0.059F), FloatEq(0.472F)));
  EXPECT_THAT(table.blue, ElementsAre(0, FloatEq(0.295F)));
}

TEST_F(GammaDimmerTest, ASecondLevelStartsFromTheBaselineAndDoesNotCompound) {
  addTable(1, {0, 1});
  dimmer.apply(40, 1);
  dimmer.apply(80, 1);
  EXPECT_THAT(curve(1), ElementsAre(0, FloatEq(0.344F)));
}

TEST_F(GammaDimmerTest, Level150DimsBy100) {
  addTable(1, {0, 1});
  EXPECT_TRUE(dimmer.apply(150, 1));
  EXPECT_THAT(curve(1), ElementsAre(0, FloatEq(0.18F)));
  EXPECT_EQ(dimmer.amount(1), 100);
  EXPECT_TRUE(dimmer.apply(std::numeric_limits<std::int64_t>::max(), 1));
  EXPECT_EQ(dimmer.amount(1), 100);
}

TEST_F(GammaDimmerTest, Level0OnAnUndimmedDisplayWritesNothing) {
  addTable(1, {0, 1});
  EXPECT_TRUE(dimmer.apply(0, 1));
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(GammaDimmerTest, ALevelBelow1RestoresTheCachedBaseline) {
  for (const std::int64_t level :
       {std::int64_t{0}, std::int64_t{-5}, std::numeric_limits<std::int64_t>::min()}) {
    addTable(1, {0, 0.9F});
    dimmer.apply(30, 1);
    EXPECT_TRUE(dimmer.apply(level, 1));
    EXPECT_THAT(curve(1), ElementsAre(0, 0.9F)) << level;
    EXPECT_EQ(dimmer.amount(1), 0) << level;
  }
}

TEST_F(GammaDimmerTest, ADisplayWithoutABaselineCannotBeDimmed) {
  EXPECT_FALSE(dimmer.apply(30, 1));
  EXPECT_EQ(dimmer.amount(1), 0);
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1"));
}

TEST_F(GammaDimmerTest, ARefusedWriteLeavesTheAmountAsItWas) {
  addTable(1, {0, 1});
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(dimmer.apply(30, 1));
  EXPECT_EQ(dimmer.amount(1), 0);
  tables.writeStatus[1] = 0;
  dimmer.apply(30, 1);
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(dimmer.apply(60, 1));
  EXPECT_EQ(dimmer.amount(1), 30);
}

TEST_F(GammaDimmerTest, RestoringAnUndimmedDisplayTouchesNothing) {
  addTable(1, {0, 1});
  dimmer.restore(1);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(GammaDimmerTest, RestoringWritesTheBaselineAndKeepsIt) {
  addTable(1, {0, 0.9F});
  dimmer.apply(30, 1);
  tables.calls.clear();
  dimmer.restore(1);
  EXPECT_EQ(dimmer.amount(1), 0);
  EXPECT_THAT(curve(1), ElementsAre(0, 0.9F));
  EXPECT_THAT(tables.calls, ElementsAre("write 1 2"));
  EXPECT_NE(baselines->cached(1), std::nullopt);
}

TEST_F(GammaDimmerTest, ARefusedRestoreStillForgetsTheAmount) {
  addTable(1, {0, 1});
  dimmer.apply(30, 1);
  tables.writeStatus[1] = 1000;
  dimmer.restore(1);
  EXPECT_EQ(dimmer.amount(1), 0);
}

TEST_F(GammaDimmerTest, RestoringWithoutABaselineResetsAllDisplays) {
  addTable(1, {0, 1});
  dimmer.apply(30, 1);
  baselines->forget(1);
  tables.calls.clear();
  dimmer.restore(1);
  EXPECT_EQ(dimmer.amount(1), 0);
  EXPECT_THAT(tables.calls, ElementsAre("restore all"));
}

TEST_F(GammaDimmerTest, RestoringAllWithNothingAppliedResetsAllDisplaysExactlyOnce) {
  dimmer.restoreAll();
  EXPECT_THAT(tables.calls, ElementsAre("restore all"));
}

TEST_F(GammaDimmerTest, RestoringAllWritesTheBaselinesBackAndThenResetsAllDisplays) {
  addTable(1, {0, 0.9F});
  addTable(2, {0, 0.5F, 1});
  dimmer.apply(30, 1);
  dimmer.apply(60, 2);
  tables.calls.clear();
  dimmer.restoreAll();
  EXPECT_THAT(tables.calls, testing::UnorderedElementsAre("write 1 2", "write 2 3", "restore all"));
  EXPECT_EQ(tables.calls.back(), "restore all");
  EXPECT_THAT(curve(1), ElementsAre(0, 0.9F));
  EXPECT_EQ(dimmer.amount(1) + dimmer.amount(2), 0);
}

TEST_F(GammaDimmerTest, RestoringAllWithoutABaselineResetsAllDisplaysInItsPlace) {
  addTable(1, {0, 0.9F});
  addTable(2, {0, 0.5F, 1});
  dimmer.apply(30, 1);
  dimmer.apply(60, 2);
  baselines->forget(1);
  tables.calls.clear();
  dimmer.restoreAll();
  EXPECT_THAT(tables.calls,
              testing::UnorderedElementsAre("restore all", "write 2 3", "restore all"));
  EXPECT_EQ(tables.calls.back(), "restore all");
  EXPECT_THAT(curve(2), ElementsAre(0, 0.5F, 1));
  EXPECT_EQ(dimmer.amount(1) + dimmer.amount(2), 0);
}

TEST_F(GammaDimmerTest, ReappliesEveryLevel) {
  addTable(1, {0, 1});
  addTable(2, {0, 1});
  dimmer.apply(25, 1);
  dimmer.apply(50, 2);
  addTable(1, {0, 0.7F});
  addTable(2, {0, 0.7F});
  EXPECT_TRUE(dimmer.reapply());
  EXPECT_THAT(curve(1), ElementsAre(0, FloatEq(0.795F)));
  EXPECT_THAT(curve(2), ElementsAre(0, FloatEq(0.59F)));
  EXPECT_EQ(dimmer.amount(1), 25);
  EXPECT_EQ(dimmer.amount(2), 50);
}

TEST_F(GammaDimmerTest, ReapplyingNothingSucceeds) {
  EXPECT_TRUE(dimmer.reapply());
}

TEST_F(GammaDimmerTest, AFailedReapplyKeepsEveryLevelAndTheNextOneTriesAgain) {
  addTable(1, {0, 1});
  addTable(2, {0, 1});
  dimmer.apply(25, 1);
  dimmer.apply(50, 2);
  tables.writeStatus[1] = 1000;
  tables.calls.clear();
  EXPECT_FALSE(dimmer.reapply());
  EXPECT_THAT(tables.calls, testing::UnorderedElementsAre("write 1 2", "write 2 2"));
  EXPECT_EQ(dimmer.amount(1), 25);
  EXPECT_EQ(dimmer.amount(2), 50);
  tables.writeStatus[1] = 0;
  EXPECT_TRUE(dimmer.reapply());
}

}  // namespace
}  // namespace brivane
