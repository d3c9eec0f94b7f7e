#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"
#include "Tests/Support/GammaBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ExtendedGammaBrightenerTest : testing::Test, GammaBench {
  std::optional<double> headroom = 2.0;
  ExtendedGammaSettings settings;
  ExtendedGammaBrightener brightener{baselines, io, [this](DisplayID) { return headroom; },
                                     settings};

  /// Leaves the curve of another program or an earlier run in force.
  void poison(DisplayID display, float peak) { addTable(display, {0, 0.5F, peak, peak}); }
};

TEST_F(ExtendedGammaBrightenerTest, SupportsDisplaysWithHeadroomAndALargeEnoughTable) {
  tables.add(1, 1024);
  tables.add(2, 3);
  EXPECT_TRUE(brightener.isSupported(1));
  EXPECT_FALSE(brightener.isSupported(2));
  EXPECT_FALSE(brightener.isSupported(3));
  for (const auto absent : {std::optional<double>(), std::optional(1.0), std::optional(0.5),
                            std::optional(std::numeric_limits<double>::quiet_NaN())}) {
    headroom = absent;
    EXPECT_FALSE(brightener.isSupported(1));
  }
}

TEST_F(ExtendedGammaBrightenerTest, WithoutHeadroomNothingIsWrittenNorRead) {
  tables.add(1, 1024);
  for (const auto absent : {std::optional<double>(), std::optional(1.0), std::optional(0.5),
                            std::optional(std::numeric_limits<double>::quiet_NaN())}) {
    headroom = absent;
    EXPECT_FALSE(brightener.apply(50, 1));
  }
  EXPECT_EQ(brightener.amount(1), 0);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(ExtendedGammaBrightenerTest, Headroom2And5WithAmount40MultipliesA256SampleTableBy1Point6) {
  headroom = 2.5;
  tables.add(1, 1024);
  EXPECT_TRUE(brightener.apply(40, 1));
  const double gain = 1 + 40.0 / 100 * (2.5 - 1);
  const auto expected = GammaRamp::identity(1024).resampled(256).value_or(GammaRamp{}).scaled(gain);
  EXPECT_EQ(tables.written[1].red, expected.red);
  EXPECT_EQ(tables.written[1].green, expected.green);
  EXPECT_EQ(tables.written[1].blue, expected.blue);
  EXPECT_FLOAT_EQ(curve(1).back(), 1.6F);
  EXPECT_EQ(brightener.amount(1), 40);
}

TEST_F(ExtendedGammaBrightenerTest, ATableOf200IsWrittenWith100Samples) {
  tables.add(1, 200);
  EXPECT_TRUE(brightener.apply(100, 1));
  EXPECT_EQ(tables.written[1].red.size(), 100U);
  EXPECT_EQ(curve(1).back(), 2.0F);
}

TEST_F(ExtendedGammaBrightenerTest, TheGainStopsAtTheMaximumWhateverTheHeadroom) {
  headroom = 16;
  tables.add(1, 1024);
  EXPECT_TRUE(brightener.apply(300, 1));
  EXPECT_EQ(curve(1).back(), 4.0F);
  EXPECT_EQ(brightener.amount(1), 100);
}

TEST_F(ExtendedGammaBrightenerTest, AMaximumGainOfOneLeavesNothingToDo) {
  tables.add(1, 1024);
  ExtendedGammaBrightener flat(baselines, io, [this](DisplayID) { return headroom; }, {1.0, 256});
  EXPECT_FALSE(flat.apply(50, 1));
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(ExtendedGammaBrightenerTest, FailsOnTooSmallATableWithoutReadingIt) {
  tables.add(1, 3);
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1"));
}

TEST_F(ExtendedGammaBrightenerTest, FailsWithoutABaseline) {
  tables.add(1, 8);
  tables.readStatus[1] = 1000;
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_EQ(brightener.amount(1), 0);
}

TEST_F(ExtendedGammaBrightenerTest, FailsOnABaselineThatCannotBeResampled) {
  addTable(1, {1});
  tables.capacities[1] = 8;
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_EQ(curve(1).size(), 1U);
}

TEST_F(ExtendedGammaBrightenerTest, ARefusedWriteLeavesTheAmountAsItWas) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(brightener.apply(60, 1));
  EXPECT_EQ(brightener.amount(1), 50);
}

TEST_F(ExtendedGammaBrightenerTest, RestoringWritesTheFullSizeBaselineBack) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  EXPECT_TRUE(brightener.apply(0, 1));
  EXPECT_EQ(curve(1), GammaRamp::identity(8).red);
  EXPECT_EQ(brightener.amount(1), 0);
}

TEST_F(ExtendedGammaBrightenerTest, RestoresEvenOnceTheHeadroomIsGone) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  headroom.reset();
  EXPECT_TRUE(brightener.apply(-1, 1));
  EXPECT_EQ(curve(1), GammaRamp::identity(8).red);
}

TEST_F(ExtendedGammaBrightenerTest, RelinquishingForgetsWithoutWriting) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  tables.calls.clear();
  brightener.relinquish(1);
  EXPECT_EQ(brightener.amount(1), 0);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(ExtendedGammaBrightenerTest, APoisonedBaselineIsResetToIdentityAndDropped) {
  poison(1, 1.2F);
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_EQ(curve(1), GammaRamp::identity(4).red);
  EXPECT_EQ(baselines->cached(1), std::nullopt);
  EXPECT_EQ(brightener.amount(1), 0);
  EXPECT_TRUE(brightener.apply(50, 1));
  EXPECT_EQ(curve(1).back(), 1.5F);
}

TEST_F(ExtendedGammaBrightenerTest, APoisonedBaselineIsResetOnceUntilAnApplySucceeds) {
  poison(1, 1.2F);
  brightener.apply(50, 1);
  poison(1, 1.2F);
  tables.calls.clear();
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1", "capacity 1", "read 1 4"));
  EXPECT_NE(baselines->cached(1), std::nullopt);
}

TEST_F(ExtendedGammaBrightenerTest, PoisonedDisplaysAreResetIndependently) {
  poison(1, 1.2F);
  poison(2, 1.2F);
  brightener.apply(50, 1);
  EXPECT_FALSE(brightener.apply(50, 2));
  EXPECT_EQ(curve(2), GammaRamp::identity(4).red);
  EXPECT_TRUE(brightener.apply(50, 2)) << "which doesn't allow display 1 another reset";
  poison(1, 1.2F);
  tables.calls.clear();
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1", "capacity 1", "read 1 4"));
}

TEST_F(ExtendedGammaBrightenerTest, ASuccessOrRestoringAllAllowsAnotherReset) {
  for (const bool succeeds : {true, false}) {
    poison(1, 1.2F);
    brightener.apply(50, 1);
    if (succeeds) {
      EXPECT_TRUE(brightener.apply(50, 1));
    } else {
      brightener.restoreAll();
    }
    baselines->forget(1);
    poison(1, 1.2F);
    EXPECT_FALSE(brightener.apply(50, 1));
    EXPECT_EQ(curve(1), GammaRamp::identity(4).red) << succeeds;
    brightener.restoreAll();
  }
}

TEST_F(ExtendedGammaBrightenerTest, ARefusedResetStillDropsTheBaseline) {
  poison(1, 1.2F);
  tables.writeStatus[1] = 1000;
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_EQ(baselines->cached(1), std::nullopt);
}

class VanishingTables : public FakeGammaTables {
 public:
  std::uint32_t capacity(DisplayID) override { return answersLeft-- > 0 ? 4 : 1; }
  int answersLeft = 2;
};

TEST(ExtendedGammaBrightener, ATableThatVanishesBeforeTheResetIsNeitherWrittenNorForgotten) {
  VanishingTables tables;
  tables.tables[1] = {{0, 1.2F}, {0, 1.2F}, {0, 1.2F}};
  const auto io = std::make_shared<CoreGraphicsGammaTableIO>(tables);
  const auto baselines = std::make_shared<GammaBaselineStore>(io);
  ExtendedGammaBrightener brightener(baselines, io, [](DisplayID) { return 2.0; }, {});
  EXPECT_FALSE(brightener.apply(50, 1));
  EXPECT_THAT(tables.calls, ElementsAre("read 1 4"));
  EXPECT_NE(baselines->cached(1), std::nullopt);
}

TEST_F(ExtendedGammaBrightenerTest, WhiteItselfDoesNotPoison) {
  poison(1, 1.0F);
  EXPECT_TRUE(brightener.apply(50, 1));
}

TEST_F(ExtendedGammaBrightenerTest, RestoringAllWritesTheBaselinesBackAndResetsAllDisplays) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  tables.calls.clear();
  brightener.restoreAll();
  EXPECT_THAT(tables.calls, ElementsAre("write 1 8", "restore all"));
  EXPECT_EQ(brightener.amount(1), 0);
}

TEST_F(ExtendedGammaBrightenerTest, AReapplyWithoutHeadroomFailsAndKeepsTheAmount) {
  tables.add(1, 8);
  brightener.apply(50, 1);
  tables.add(1, 8);
  headroom.reset();
  EXPECT_FALSE(brightener.reapply());
  EXPECT_EQ(brightener.amount(1), 50);
  headroom = 2.0;
  EXPECT_TRUE(brightener.reapply());
  EXPECT_EQ(curve(1).back(), 1.5F);
}

}  // namespace
}  // namespace brivane
