#include <gtest/gtest.h>

#include <limits>

#include "BrivaneCore/DDC/DDCRetryTracker.h"

namespace brivane {
namespace {

using State = RetryStatus::DisplayState;

constexpr DisplayID monitor = 3;
constexpr DisplayID other = 4;

struct DDCRetryTrackerTest : testing::Test {
  void pass(double seconds) { time += fromSeconds(seconds); }

  Instant time{fromSeconds(1000)};
  DDCRetryTracker tracker{[this] { return time; }};
};

TEST_F(DDCRetryTrackerTest, BacksOffOneTwoThreeFourFiveSecondsAndThenFive) {
  for (const double expected : {1, 2, 3, 4, 5, 5, 5, 5}) {
    EXPECT_EQ(tracker.recordFailure(monitor).backoff, expected);
    EXPECT_EQ(tracker.nextRetry.at(monitor), time + fromSeconds(expected));
    pass(expected);
  }
  EXPECT_EQ(tracker.readFailures.at(monitor), 8);
}

TEST_F(DDCRetryTrackerTest, TheFirstFailureAfterASuccessIsTheOnlyNewOne) {
  EXPECT_TRUE(tracker.recordFailure(monitor).isNewFailure);
  EXPECT_FALSE(tracker.recordFailure(monitor).isNewFailure);
  EXPECT_FALSE(tracker.recordFailure(monitor).isNewFailure);
  tracker.recordSuccess(monitor);
  EXPECT_TRUE(tracker.recordFailure(monitor).isNewFailure);
}

TEST_F(DDCRetryTrackerTest, ASuccessRestartsTheBackOff) {
  for (int i = 0; i < 4; ++i) tracker.recordFailure(monitor);
  tracker.recordSuccess(monitor);
  EXPECT_EQ(tracker.readFailures.at(monitor), 0);
  EXPECT_TRUE(tracker.canAttempt(monitor));
  EXPECT_EQ(tracker.recordFailure(monitor), (DDCRetryTracker::Failure{1, true}));
}

TEST_F(DDCRetryTrackerTest, ASuccessGivesTheLengthOfTheOutage) {
  EXPECT_EQ(tracker.recordSuccess(monitor), std::nullopt);
  tracker.recordFailure(monitor);
  pass(7);
  tracker.recordFailure(monitor);
  pass(5.4);
  EXPECT_EQ(tracker.recordSuccess(monitor), 12.4);
  EXPECT_EQ(tracker.recordSuccess(monitor), std::nullopt) << "each outage is reported once";
}

TEST_F(DDCRetryTrackerTest, TheBackOffScheduleIsThatOfTheInstance) {
  tracker.backoffSchedule = {0.25, 10};
  EXPECT_EQ(tracker.recordFailure(monitor).backoff, 0.25);
  EXPECT_EQ(tracker.recordFailure(monitor).backoff, 10);
  EXPECT_EQ(tracker.recordFailure(monitor).backoff, 10);
}

TEST_F(DDCRetryTrackerTest, AnEmptyBackOffScheduleIsAProgrammingError) {
  tracker.backoffSchedule = {};
  EXPECT_DEATH(tracker.recordFailure(monitor), "empty back-off schedule");
}

TEST_F(DDCRetryTrackerTest, AFailureCountThatOverflowsIsAProgrammingError) {
  tracker.readFailures[monitor] = std::numeric_limits<std::int64_t>::max();
  EXPECT_DEATH(tracker.recordFailure(monitor), "a count of failed reads");
}

TEST_F(DDCRetryTrackerTest, AnUnknownDisplayMayBeReadAtOnce) {
  EXPECT_TRUE(tracker.canAttempt(monitor));
}

TEST_F(DDCRetryTrackerTest, ADisplayMayBeReadAgainFromTheInstantOfItsNextRetryOn) {
  tracker.recordFailure(monitor);
  EXPECT_FALSE(tracker.canAttempt(monitor));
  EXPECT_TRUE(tracker.canAttempt(other));
  pass(0.999999);
  EXPECT_FALSE(tracker.canAttempt(monitor));
  pass(0.000001);
  EXPECT_TRUE(tracker.canAttempt(monitor));
  pass(100);
  EXPECT_TRUE(tracker.canAttempt(monitor));
}

TEST_F(DDCRetryTrackerTest, ADisplayInFlightIsNeverReadTwiceAtOnce) {
  tracker.warmsInFlight.insert(monitor);
  EXPECT_FALSE(tracker.canAttempt(monitor));
  tracker.recordFailure(monitor);
  pass(60);
  EXPECT_FALSE(tracker.canAttempt(monitor)) << "though its next retry has passed";
}

TEST_F(DDCRetryTrackerTest, ADisplayThatAnsweredInThisRunIsKnown) {
  tracker.recordFailure(monitor);
  pass(1000);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, true, std::nullopt));
  EXPECT_TRUE(tracker.isKnownDDC(monitor, true, false));
  EXPECT_TRUE(tracker.isKnownDDC(monitor, true, true));
}

TEST_F(DDCRetryTrackerTest, ADisplayThatNeverAnsweredIsNotKnown) {
  EXPECT_FALSE(tracker.isKnownDDC(monitor, false, std::nullopt));
  EXPECT_FALSE(tracker.isKnownDDC(monitor, false, false));
}

TEST_F(DDCRetryTrackerTest, ARememberedDisplayIsGivenUpOnAfterThreeMinutesOfOutage) {
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
  tracker.recordFailure(monitor);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
  pass(179);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
  pass(0.999999);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
  pass(0.000001);
  EXPECT_FALSE(tracker.isKnownDDC(monitor, false, true));
  EXPECT_TRUE(tracker.isKnownDDC(monitor, true, true)) << "once it answers";
  tracker.recordSuccess(monitor);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
}

TEST_F(DDCRetryTrackerTest, TheTimeLimitsOfAnInstanceChangeNothing) {
  tracker.giveUpAfter = 1;
  tracker.minimumAttemptVisibility = 60;
  tracker.attemptStartedAt[monitor] = time;
  tracker.recordFailure(monitor);
  pass(0.8);
  EXPECT_EQ(tracker.status(monitor).secondsUntilNextAttempt, 1);
  pass(179.1);
  EXPECT_TRUE(tracker.isKnownDDC(monitor, false, true));
}

TEST_F(DDCRetryTrackerTest, AnUnknownDisplayIsShownAsDueNow) {
  EXPECT_EQ(tracker.status(monitor), (RetryStatus{true, 0, 0}));
}

TEST_F(DDCRetryTrackerTest, ADisplayInFlightIsShownAsRetryingNow) {
  tracker.recordFailure(monitor);
  tracker.warmsInFlight.insert(monitor);
  EXPECT_EQ(tracker.status(monitor), (RetryStatus{true, 1, std::nullopt}));
}

TEST_F(DDCRetryTrackerTest, AnAttemptIsShownForFourFifthsOfASecondEvenIfItEndedBefore) {
  tracker.attemptStartedAt[monitor] = time;
  pass(0.18);
  tracker.recordFailure(monitor);
  pass(0.619999);
  EXPECT_EQ(tracker.status(monitor), (RetryStatus{true, 1, std::nullopt}));
  EXPECT_EQ(tracker.status(monitor).displayState(), State::retryingNow());
  pass(0.000001);
  EXPECT_EQ(tracker.status(monitor), (RetryStatus{true, 1, 1})) << "0.38 s to go";
}

TEST_F(DDCRetryTrackerTest, TheSecondsLeftAreRoundedUpAndNeverBelowZero) {
  const std::pair<double, std::int64_t> cases[] = {
      {2.1, 3}, {2.000001, 3}, {2.0, 2}, {1.0, 1}, {0.000001, 1}, {0, 0}, {-0.5, 0}, {-60, 0}};
  for (const auto& [ahead, expected] : cases) {
    tracker.nextRetry[monitor] = time + fromSeconds(ahead);
    EXPECT_EQ(tracker.status(monitor), (RetryStatus{true, 0, expected})) << ahead;
  }
}

TEST_F(DDCRetryTrackerTest, ANextRetryThatHasPassedIsShownAsRetryingNow) {
  tracker.nextRetry[monitor] = time - fromSeconds(1);
  EXPECT_EQ(tracker.status(monitor).displayState(), State::retryingNow());
  tracker.nextRetry[monitor] = time + fromSeconds(2.1);
  EXPECT_EQ(tracker.status(monitor).displayState(), State::nextTry(3));
}

TEST_F(DDCRetryTrackerTest, ClearAllForgetsEverythingButReadsInFlight) {
  tracker.recordFailure(monitor);
  tracker.attemptStartedAt[monitor] = time;
  tracker.warmsInFlight.insert(monitor);
  tracker.clearAll();
  EXPECT_TRUE(tracker.readFailures.empty());
  EXPECT_TRUE(tracker.nextRetry.empty());
  EXPECT_TRUE(tracker.failingSince.empty());
  EXPECT_TRUE(tracker.attemptStartedAt.empty());
  EXPECT_EQ(tracker.warmsInFlight, std::set<DisplayID>{monitor});
}

}  // namespace
}  // namespace brivane
