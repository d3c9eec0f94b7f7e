#include <gmock/gmock.h>

#include "Tests/BrivaneCore/DDC/CoordinatorFixture.h"

namespace brivane {
namespace {

using testing::IsEmpty;

struct ResyncTest : CoordinatorTest {
  void resync() {
    coordinator->resyncCache();
    run(0.5);
  }
};

TEST_F(ResyncTest, ALevelSetWithAMonitorsOwnButtonsIsFollowedAndSaved) {
  letBothAnswer();
  left.current = 30;
  resync();
  EXPECT_EQ(notes(), joined({answeredRead(10'000, "disp0"),
                             answeredRead(10'040, "disp1"),
                             {at(10'080, "set brightness.10.20.30=30")}}));
  EXPECT_EQ(coordinator->levelCache.percents,
            (std::map<DisplayID, Percent>{{leftID, 30}, {rightID, 50}}));
}

TEST_F(ResyncTest, ALevelThatDidNotChangeIsNotSaved) {
  letBothAnswer();
  resync();
  EXPECT_EQ(notes(), joined({answeredRead(10'000, "disp0"), answeredRead(10'040, "disp1")}));
}

TEST_F(ResyncTest, ALevelIsConvertedWithTheMaximumThatComesWithIt) {
  letBothAnswer();
  left.current = 128;
  left.max = 255;
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  left.current = 64;
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 25);
  EXPECT_EQ(coordinator->levelCache.nativeMaxes.at(leftID), 100) << "which is not kept";
}

TEST_F(ResyncTest, ALevelThatIsMissingFromTheCacheIsFilledIn) {
  letBothAnswer();
  coordinator->levelCache.percents.erase(leftID);
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
}

TEST_F(ResyncTest, AMonitorWrittenToLessThanThreeSecondsAgoIsNotReRead) {
  letBothAnswer();
  ASSERT_TRUE(coordinator->write(80, leftID, false));
  left.current = 30;
  machine.time.runFor(Microseconds(2'999'999));
  notes();
  resync();
  EXPECT_EQ(left.getCount, 1);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 80);
}

TEST_F(ResyncTest, AMonitorWrittenToThreeSecondsAgoIsReRead) {
  letBothAnswer();
  ASSERT_TRUE(coordinator->write(80, leftID, false));
  left.current = 30;
  machine.time.runFor(Microseconds(3'000'000));
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 30);
}

TEST_F(ResyncTest, TheQuietPeriodIsMeasuredWhenTheMonitorsTurnComes) {
  letBothAnswer();
  ASSERT_TRUE(coordinator->write(80, rightID, false));
  right.current = 30;
  machine.time.runFor(Microseconds(2'960'000));
  resync();  // the left monitor's read takes the 40 ms that were missing
  EXPECT_EQ(coordinator->levelCache.percents.at(rightID), 30);
}

TEST_F(ResyncTest, AWriteDuringAReReadIsNotOverwrittenByWhatWasRead) {
  letBothAnswer();
  left.reply = [] {
    return std::vector<std::uint8_t>{0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0, 100, 0, 30, 0, 0};
  };
  machine.time.after(fromSeconds(0.01), [this] { coordinator->write(80, leftID, false); });
  resync();
  EXPECT_EQ(left.getCount, 2) << "the monitor was read";
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 80);
  EXPECT_EQ(stored("brightness.10.20.30"), 80);
}

TEST_F(ResyncTest, AWriteBetweenAReReadAndItsResultWins) {
  letBothAnswer();
  left.current = 30;
  // The left monitor is read until 40 ms; the results of both come in at 80 ms.
  machine.time.after(fromSeconds(0.05), [this] { coordinator->write(80, leftID, false); });
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 80);
  EXPECT_EQ(stored("brightness.10.20.30"), 80);
}

TEST_F(ResyncTest, AMonitorThatFailedThreeTimesIsNotReRead) {
  letBothAnswer();
  coordinator->tracker.readFailures[leftID] = 3;
  left.current = 30;
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  EXPECT_EQ(left.getCount, 1);
  coordinator->tracker.readFailures[leftID] = 2;
  resync();
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 30);
}

TEST_F(ResyncTest, AReReadThatIsNotAnsweredChangesNothing) {
  letBothAnswer();
  left.answers = false;
  right.current = 30;
  resync();
  EXPECT_EQ(coordinator->levelCache.percents,
            (std::map<DisplayID, Percent>{{leftID, 50}, {rightID, 30}}));
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 0)
      << "the re-read doesn't count as a failure";
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(ResyncTest, AReReadOfAnOlderDisplaySetIsDropped) {
  letBothAnswer();
  left.current = 30;
  coordinator->resyncCache();
  run(0.06);
  coordinator->invalidate();
  run(1);
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_EQ(stored("brightness.10.20.30"), std::nullopt);
}

TEST_F(ResyncTest, AReReadIsDroppedWhenTheCoordinatorGoes) {
  letBothAnswer();
  left.current = 30;
  coordinator->resyncCache();
  run(0.06);
  coordinator.reset();
  run(1);
  EXPECT_EQ(stored("brightness.10.20.30"), std::nullopt);
}

TEST_F(ResyncTest, MonitorsThatHaveNotAnsweredAreReadFirst) {
  coordinator->warmCache(rightID);
  run(1);
  notes();
  resync();
  EXPECT_EQ(notes(), joined({answeredRead(1'000, "disp0"), keptCapability(1'040, leftPanel, 100),
                             answeredRead(1'040, "disp1")}));
}

TEST_F(ResyncTest, MonitorsInFlightOrNotYetDueAreNotReadAgain) {
  left.answers = false;
  coordinator->warmCache(leftID);
  coordinator->warmCache(rightID);
  coordinator->resyncCache();
  run(0.5);
  coordinator->resyncCache();
  run(0.5);
  EXPECT_EQ(left.getCount, 3) << "one read of three attempts";
  EXPECT_EQ(right.getCount, 2) << "one re-read of the other monitor";
}

TEST_F(ResyncTest, BuiltInAndAppleDisplaysAreNeverUnresolved) {
  machine.displaySystem.online.at(0).isBuiltIn = true;
  machine.displayServices.install(machine.loader);
  machine.displayServices.canChange[rightID] = true;
  EXPECT_FALSE(coordinator->hasUnresolvedDisplays());
  resync();
  coordinator->retryNow();
  run(1);
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(ResyncTest, DisplaysAreUnresolvedUntilTheLastOneAnswers) {
  EXPECT_TRUE(coordinator->hasUnresolvedDisplays());
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_TRUE(coordinator->hasUnresolvedDisplays());
  coordinator->warmCache(rightID);
  run(1);
  EXPECT_FALSE(coordinator->hasUnresolvedDisplays());
  coordinator->invalidate();
  EXPECT_TRUE(coordinator->hasUnresolvedDisplays());
  machine.displaySystem.online.clear();
  EXPECT_FALSE(coordinator->hasUnresolvedDisplays());
}

TEST_F(ResyncTest, RetryNowForgetsTheOutageAndReadsAtOnce) {
  left.answers = false;
  right.answers = false;
  coordinator->prewarm({});
  run(0.5);
  left.answers = true;
  notes();
  coordinator->retryNow();
  run(0.5);
  EXPECT_EQ(notes(), joined({answeredRead(500, "disp0"),
                             keptCapability(540, leftPanel, 100),
                             unansweredRead(540, "disp1"),
                             {at(720, "log Brivane: [5] Right stopped answering DDC")}}))
      << "logs a new outage, but no recovery from a forgotten one";
}

TEST_F(ResyncTest, RetryNowDoesNotReadWhatIsBeingRead) {
  coordinator->warmCache(leftID);
  coordinator->retryNow();
  run(1);
  EXPECT_EQ(left.getCount, 1);
  EXPECT_EQ(right.getCount, 1);
}

TEST_F(ResyncTest, RetryPendingNowReadsAtOnceButKeepsTheOutage) {
  left.answers = false;
  coordinator->prewarm({});
  run(0.5);
  left.answers = true;
  notes();
  coordinator->retryPendingNow();
  EXPECT_TRUE(coordinator->tracker.failingSince.contains(leftID));
  run(0.4);
  EXPECT_EQ(notes(), joined({answeredRead(500, "disp0"),
                             {at(540, "log Brivane: [3] Left answering again after 0s")},
                             keptCapability(540, leftPanel, 100)}));
}

TEST_F(ResyncTest, RetryPendingNowRestartsTheBackOff) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(10);
  ASSERT_EQ(coordinator->tracker.readFailures.at(leftID), 4);
  coordinator->retryPendingNow();
  run(0.5);
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 1);
  EXPECT_EQ(coordinator->tracker.nextRetry.at(leftID), Instant(fromSeconds(11.18)))
      << "1 s after the failure at 10.18 s";
}

TEST_F(ResyncTest, RetryPendingNowReadsEvenWhatIsBeingRead) {
  coordinator->warmCache(leftID);
  coordinator->retryPendingNow();
  run(1);
  EXPECT_EQ(left.getCount, 2);
}

TEST_F(ResyncTest, BothRetriesLookForNewChannelsFirst) {
  const auto entries = std::exchange(machine.registry.entries, {});
  coordinator->prewarm({});
  run(0.5);
  machine.registry.entries = entries;
  coordinator->retryNow();
  run(0.5);
  EXPECT_EQ(coordinator->levelCache.percents.size(), 2U);

  coordinator->invalidate();
  machine.registry.entries.clear();
  run(0.5);
  machine.registry.entries = entries;
  coordinator->retryPendingNow();
  run(0.5);
  EXPECT_EQ(coordinator->levelCache.percents.size(), 2U);
}

}  // namespace
}  // namespace brivane
