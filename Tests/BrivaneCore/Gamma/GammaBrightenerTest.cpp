#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "BrivaneCore/Gamma/GammaBrightener.h"
#include "Tests/Support/GammaBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::IsEmpty;

struct GammaBrightenerTest : testing::Test, GammaBench {
  GammaBrightener brightener{baselines, io};
};

TEST_F(GammaBrightenerTest, SupportsDisplaysThatHaveAGammaTable) {
  addTable(1, {0, 1});
  EXPECT_TRUE(brightener.isSupported(1));
  EXPECT_FALSE(brightener.isSupported(2));
}

TEST_F(GammaBrightenerTest, LiftsMidTonesAndLeavesBlackAndWhite) {
  addTable(1, {0, 0.25F, 0.5F, 1});
  EXPECT_TRUE(brightener.apply(100, 1));
  EXPECT_NEAR(curve(1)[1], 0.4629, 1e-4);
  EXPECT_THAT(curve(1), ElementsAre(0, FloatEq(static_cast<float>(std::pow(0.25, 1 / 1.8))),
                                    FloatEq(static_cast<float>(std::pow(0.5, 1 / 1.8))), 1));
}

TEST_F(GammaBrightenerTest, TheExponentFallsWithTheAmount) {
  const std::map<std::int64_t, double> exponents = {{1, 1 / 1.008}, {50, 1 / 1.4}, {100, 1 / 1.8}};
  for (const auto& [amount, exponent] : exponents) {
    addTable(1, {0, 0.3F, 1});
    EXPECT_TRUE(brightener.apply(amount, 1));
    EXPECT_FLOAT_EQ(curve(1)[1], static_cast<float>(std::pow(double{0.3F}, exponent))) << amount;
    EXPECT_EQ(brightener.amount(1), amount);
    brightener.restore(1);
  }
}

// In single precision throughout these come out one float lower.
TEST_F(GammaBrightenerTest, PowersAreTakenInDoublePrecision) {
  addTable(1, {0.01F, 0.02F});
  brightener.apply(100, 1);
  EXPECT_THAT(curve(1), ElementsAre(0.0774263665F, 0.113796204F));
  brightener.apply(50, 1);
  EXPECT_THAT(curve(1), ElementsAre(0.0372759365F, 0.0611575358F));
}

TEST_F(GammaBrightenerTest, SamplesOutsideBlackToWhiteCountAsTheNearerAndNoNumberAsWhite) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
  addTable(1, {1.3F, infinity, notANumber, -notANumber, -0.2F, -infinity, -0.0F});
  brightener.apply(70, 1);
  EXPECT_THAT(curve(1), ElementsAre(1, 1, 1, 1, 0, 0, 0));
}

TEST_F(GammaBrightenerTest, BendsEachChannelAndKeepsItsSampleCount) {
  tables.capacities[1] = 3;
  tables.tables[1] = {{0, 0.25F, 1}, {0, 0.5F, 1}, {0.1F, 0.2F, 0.9F}};
  brightener.apply(50, 1);
  const auto bent = [](float sample) {
    return FloatEq(static_cast<float>(std::pow(double{sample}, 1 / 1.4)));
  };
  EXPECT_THAT(tables.tables[1].red, ElementsAre(0, bent(0.25F), 1));
  EXPECT_THAT(tables.tables[1].green, ElementsAre(0, bent(0.5F), 1));
  EXPECT_THAT(tables.tables[1].blue, ElementsAre(bent(0.1F), bent(0.2F), bent(0.9F)));
}

TEST_F(GammaBrightenerTest, ASecondAmountStartsFromTheBaseline) {
  addTable(1, {0, 0.25F, 1});
  brightener.apply(100, 1);
  const auto direct = curve(1);
  brightener.apply(30, 1);
  brightener.apply(100, 1);
  EXPECT_EQ(curve(1), direct);
}

TEST_F(GammaBrightenerTest, AnAmountAbove100CountsAs100) {
  addTable(1, {0, 0.25F, 1});
  EXPECT_TRUE(brightener.apply(250, 1));
  EXPECT_NEAR(curve(1)[1], 0.4629, 1e-4);
  EXPECT_EQ(brightener.amount(1), 100);
}

TEST_F(GammaBrightenerTest, AnAmountBelow1RestoresAndWritesNothingOnAnUnboostedDisplay) {
  addTable(1, {0, 0.25F, 1});
  EXPECT_TRUE(brightener.apply(0, 1));
  EXPECT_THAT(tables.calls, IsEmpty());
  brightener.apply(30, 1);
  EXPECT_TRUE(brightener.apply(-1, 1));
  EXPECT_THAT(curve(1), ElementsAre(0, 0.25F, 1));
  EXPECT_EQ(brightener.amount(1), 0);
}

TEST_F(GammaBrightenerTest, FailsWithoutABaseline) {
  EXPECT_FALSE(brightener.apply(30, 1));
  EXPECT_EQ(brightener.amount(1), 0);
}

TEST_F(GammaBrightenerTest, ARefusedWriteLeavesTheAmountAsItWas) {
  addTable(1, {0, 1});
  brightener.apply(30, 1);
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(brightener.apply(60, 1));
  EXPECT_EQ(brightener.amount(1), 30);
}

TEST_F(GammaBrightenerTest, RelinquishingForgetsWithoutWriting) {
  addTable(1, {0, 0.25F, 1});
  brightener.apply(30, 1);
  tables.calls.clear();
  brightener.relinquish(1);
  brightener.relinquish(2);
  brightener.restore(1);
  EXPECT_EQ(brightener.amount(1), 0);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(GammaBrightenerTest, RestoringWithoutABaselineResetsAllDisplays) {
  addTable(1, {0, 1});
  brightener.apply(30, 1);
  baselines->forget(1);
  tables.calls.clear();
  brightener.restore(1);
  EXPECT_THAT(tables.calls, ElementsAre("restore all"));
}

TEST_F(GammaBrightenerTest, RestoringAllWritesTheBaselinesBackAndResetsAllDisplays) {
  addTable(1, {0, 0.25F, 1});
  brightener.apply(30, 1);
  tables.calls.clear();
  brightener.restoreAll();
  EXPECT_THAT(tables.calls, ElementsAre("write 1 3", "restore all"));
  EXPECT_EQ(brightener.amount(1), 0);
  brightener.restoreAll();
  EXPECT_THAT(tables.calls, ElementsAre("write 1 3", "restore all", "restore all"));
}

TEST_F(GammaBrightenerTest, AFailedReapplyKeepsEveryAmount) {
  addTable(1, {0, 0.25F, 1});
  addTable(2, {0, 0.25F, 1});
  brightener.apply(30, 1);
  brightener.apply(40, 2);
  const auto boosted = curve(2);
  addTable(2, {0, 0.25F, 1});
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(brightener.reapply());
  EXPECT_EQ(brightener.amount(1), 30);
  EXPECT_EQ(brightener.amount(2), 40);
  EXPECT_EQ(curve(2), boosted);
  tables.writeStatus[1] = 0;
  EXPECT_TRUE(brightener.reapply());
}

}  // namespace
}  // namespace brivane
