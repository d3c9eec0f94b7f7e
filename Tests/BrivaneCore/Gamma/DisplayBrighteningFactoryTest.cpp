#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"
#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"
#include "BrivaneCore/Gamma/GammaBrightener.h"
#include "Tests/Support/FakeEffects.h"
#include "Tests/Support/GammaBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct DisplayBrighteningFactoryTest : testing::Test {
  EffectCalls calls;
  std::optional<double> headroom = 2.0;
  int measured = 0;
  std::shared_ptr<FakeBrightening> extended = std::make_shared<FakeBrightening>("extended", calls);
  std::shared_ptr<FakeBrightening> fallback = std::make_shared<FakeBrightening>("fallback", calls);
  DisplayBrighteningFactory factory{extended, fallback, [this](DisplayID) {
                                      ++measured;
                                      return headroom;
                                    }};

  DisplayBrightening* chosen() { return &factory.brightening(1); }
};

TEST_F(DisplayBrighteningFactoryTest, HeadroomAboveOneChoosesTheExtendedRange) {
  const std::vector<std::pair<double, DisplayBrightening*>> choices = {
      {1.001, extended.get()},
      {16, extended.get()},
      {1.0, fallback.get()},
      {0, fallback.get()},
      {std::numeric_limits<double>::quiet_NaN(), fallback.get()}};
  for (const auto& [measure, expected] : choices) {
    headroom = measure;
    factory.invalidateAll();
    EXPECT_EQ(chosen(), expected) << measure;
  }
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(DisplayBrighteningFactoryTest, AChoiceStandsUntilInvalidated) {
  EXPECT_EQ(chosen(), extended.get());
  headroom = 1.0;
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_EQ(measured, 1);
  factory.invalidateAll();
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_EQ(measured, 2);
}

TEST_F(DisplayBrighteningFactoryTest, DisplaysAreChosenForIndependently) {
  factory.brightening(1);
  headroom = 1.0;
  EXPECT_EQ(&factory.brightening(2), fallback.get());
  EXPECT_EQ(&factory.brightening(1), extended.get());
}

TEST_F(DisplayBrighteningFactoryTest, ADisplayWithoutAScreenIsServedByTheFallbackAndNeverCached) {
  headroom.reset();
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_EQ(measured, 2);
  headroom = 2.0;
  EXPECT_EQ(chosen(), extended.get());
}

TEST_F(DisplayBrighteningFactoryTest, GainingHeadroomMovesTheBoostToTheExtendedRange) {
  headroom = 1.0;
  chosen();
  fallback->amounts[1] = 30;
  headroom = 2.0;
  factory.invalidateAll();
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_THAT(calls, ElementsAre("extended apply 30 to 1", "fallback relinquish 1"));
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_EQ(measured, 2);
}

TEST_F(DisplayBrighteningFactoryTest, LosingHeadroomMovesTheBoostToTheFallback) {
  extended->amounts[1] = 1;
  headroom = 1.0;
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_THAT(calls, ElementsAre("fallback apply 1 to 1", "extended relinquish 1"));
}

TEST_F(DisplayBrighteningFactoryTest, TheLargerOfTwoAmountsIsCarried) {
  extended->amounts[1] = 20;
  fallback->amounts[1] = 70;
  headroom = 1.0;
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_THAT(calls, ElementsAre("fallback apply 70 to 1", "extended relinquish 1"));
}

TEST_F(DisplayBrighteningFactoryTest, ABoostOfTheChosenBrightenerIsLeftAlone) {
  extended->amounts[1] = 20;
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(DisplayBrighteningFactoryTest, AFailedHandOverIsTriedAgainAtTheNextCall) {
  fallback->amounts[1] = 30;
  extended->accepts = false;
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_EQ(fallback->amount(1), 30);
  extended->accepts = true;
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_THAT(calls, ElementsAre("extended apply 30 to 1", "extended apply 30 to 1",
                                 "fallback relinquish 1"));
  EXPECT_EQ(chosen(), extended.get());
  EXPECT_EQ(measured, 2);
}

TEST_F(DisplayBrighteningFactoryTest, LosingTheScreenMovesTheLargerBoostToTheFallback) {
  extended->amounts[1] = 40;
  fallback->amounts[1] = 10;
  headroom.reset();
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_THAT(calls, ElementsAre("fallback apply 40 to 1", "extended relinquish 1"));
  calls.clear();
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(DisplayBrighteningFactoryTest,
       WhatTheFallbackRefusesOnALostScreenStaysWithTheExtendedRange) {
  extended->amounts[1] = 40;
  fallback->accepts = false;
  headroom.reset();
  EXPECT_EQ(chosen(), fallback.get());
  EXPECT_EQ(extended->amount(1), 40);
}

TEST(DisplayBrighteningFactory, TheWinnersTableStaysInForceAfterAHandOver) {
  GammaBench bench;
  bench.tables.add(1, 512);
  double headroom = 1.0;
  const auto measure = [&headroom](DisplayID) { return std::optional(headroom); };
  const auto extended = std::make_shared<ExtendedGammaBrightener>(bench.baselines, bench.io,
                                                                  measure, ExtendedGammaSettings{});
  const auto fallback = std::make_shared<GammaBrightener>(bench.baselines, bench.io);
  DisplayBrighteningFactory factory(extended, fallback, measure);
  factory.brightening(1).apply(30, 1);
  headroom = 2.0;
  factory.invalidateAll();
  EXPECT_EQ(factory.brightening(1).amount(1), 30);
  EXPECT_EQ(fallback->amount(1), 0);
  EXPECT_EQ(bench.tables.written[1].red.size(), 256U);
  EXPECT_FLOAT_EQ(bench.curve(1).back(), 1.3F);
}

}  // namespace
}  // namespace brivane
