#include <gmock/gmock.h>

#include "Tests/BrivaneCore/DDC/CoordinatorFixture.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = RetryStatus::DisplayState;

struct ReadsTest : CoordinatorTest {
  /// When reads of the port began, in milliseconds: requests that follow no other within 100 ms.
  std::vector<std::int64_t> startsOfReads(const std::string& port) {
    std::vector<std::int64_t> starts;
    std::int64_t last = -1000;
    for (const std::string& note : notes()) {
      if (note.find("write " + port + " 55/81: 82 01 10 FD") == std::string::npos) continue;
      const std::int64_t time = std::stoll(note.substr(1));
      if (time - last > 100) starts.push_back(time);
      last = time;
    }
    return starts;
  }
};

TEST_F(ReadsTest, ABackgroundReadFillsTheCachesAndTheStore) {
  left.current = 30;
  left.max = 50;
  coordinator->warmCache(leftID);
  EXPECT_THAT(notes(), IsEmpty()) << "nothing happens before the queue's turn";
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"), keptCapability(40, leftPanel, 50)}));
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 60);
  EXPECT_EQ(coordinator->levelCache.nativeMaxes.at(leftID), 50);
  EXPECT_EQ(coordinator->backend(leftID), BrightnessBackendKind::ddc);
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 0);
  EXPECT_EQ(stored("brightness.10.20.30"), std::nullopt) << "a read level is not saved here";
}

TEST_F(ReadsTest, AReadIsInFlightUntilItsResultIsIn) {
  run(2);
  coordinator->warmCache(leftID);
  EXPECT_THAT(coordinator->tracker.warmsInFlight, ElementsAre(leftID));
  EXPECT_EQ(coordinator->tracker.attemptStartedAt.at(leftID), Instant(fromSeconds(2)));
  run(0.039999);
  EXPECT_THAT(coordinator->tracker.warmsInFlight, ElementsAre(leftID));
  run(0.000001);
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
}

TEST_F(ReadsTest, ADisplayInFlightIsNotReadASecondTime) {
  coordinator->warmCache(leftID);
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(left.getCount, 1);
}

TEST_F(ReadsTest, ADisplayThatAnsweredMayBeReadAgain) {
  coordinator->warmCache(leftID);
  run(1);
  left.current = 70;
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 70);
}

TEST_F(ReadsTest, ReadsOfSeveralDisplaysRunOneAfterTheOther) {
  coordinator->warmCache(rightID);
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp1"), keptCapability(40, rightPanel, 100),
                             answeredRead(40, "disp0"), keptCapability(80, leftPanel, 100)}));
}

TEST_F(ReadsTest, AMonitorThatFailsIsReportedOnceAndRetriedAtThePaceOfTheBackOff) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(30);
  EXPECT_EQ(machine.systemLog.lines, Notes{"Brivane: [3] Left stopped answering DDC"});
  EXPECT_THAT(startsOfReads("disp0"),
              ElementsAre(0, 1'180, 3'360, 6'540, 10'720, 15'900, 21'080, 26'260));
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 8);
}

TEST_F(ReadsTest, TheFirstFailureIsLoggedAndStartsTheBackOff) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(notes(), joined({unansweredRead(0, "disp0"),
                             {at(180, "log Brivane: [3] Left stopped answering DDC")}}));
  EXPECT_EQ(coordinator->tracker.nextRetry.at(leftID), Instant(fromSeconds(1.18)));
  EXPECT_EQ(coordinator->tracker.failingSince.at(leftID), Instant(fromSeconds(0.18)));
}

TEST_F(ReadsTest, ARecoveryIsReportedWithTheLengthOfTheOutage) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(10);
  left.answers = true;
  notes();
  run(20);
  // The outage began at 180 ms; the read that ends it begins at 10.72 s.
  EXPECT_EQ(notes(), joined({answeredRead(10'720, "disp0"),
                             {at(10'760, "log Brivane: [3] Left answering again after 11s")},
                             keptCapability(10'760, leftPanel, 100)}));
}

TEST_F(ReadsTest, AnOutageOfTwelvePointFourSecondsIsLoggedAsTwelve) {
  coordinator->tracker.failingSince[leftID] = now();
  run(12.36);
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(machine.systemLog.lines, Notes{"Brivane: [3] Left answering again after 12s"});
}

TEST_F(ReadsTest, ASecondOutageIsReportedAndBacksOffLikeTheFirst) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(10);
  left.answers = true;
  run(10);
  left.answers = false;
  notes();
  coordinator->invalidate();
  coordinator->warmCache(leftID);
  run(3);
  EXPECT_THAT(startsOfReads("disp0"), ElementsAre(20'000, 21'180));
  EXPECT_EQ(machine.systemLog.lines, (Notes{"Brivane: [3] Left stopped answering DDC",
                                            "Brivane: [3] Left answering again after 11s",
                                            "Brivane: [3] Left stopped answering DDC"}));
}

TEST_F(ReadsTest, AMonitorThatAlwaysAnswersIsNeverReported) {
  letBothAnswer();
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(ReadsTest, ADisplayWithoutAChannelFailsToo) {
  machine.registry.entries.clear();
  coordinator->warmCache(leftID);
  run(0.5);
  EXPECT_EQ(notes(), Notes{at(0, "log Brivane: [3] Left stopped answering DDC")});
  EXPECT_EQ(coordinator->tracker.nextRetry.at(leftID), Instant(fromSeconds(1)));
  setStored("ddcmax.10.20.30", 100);
  EXPECT_FALSE(coordinator->write(60, leftID, false)) << "there is no channel";
}

TEST_F(ReadsTest, AChannelThatWasFoundOnceIsKeptWhenItIsNotFoundAgain) {
  coordinator->warmCache(leftID);
  run(6);
  machine.registry.entries.clear();
  coordinator->warmCache(leftID);
  run(0.5);
  ASSERT_EQ(coordinator->tracker.readFailures.at(leftID), 1);
  EXPECT_TRUE(coordinator->write(60, leftID, false));
}

TEST_F(ReadsTest, AChannelIsKeptEvenWhenItsMonitorDoesNotAnswer) {
  setStored("ddcmax.10.20.30", 100);
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  EXPECT_TRUE(coordinator->write(60, leftID, false));
}

TEST_F(ReadsTest, AChannelThatAppearsLaterIsFoundByARetryAfterFiveSeconds) {
  const auto entries = std::exchange(machine.registry.entries, {});
  coordinator->warmCache(leftID);
  run(0.5);
  machine.registry.entries = entries;
  run(12);
  // Retries at 1, 3, 6 s: the registry was walked at 0 s and is walked again at 6 s.
  EXPECT_EQ(machine.registry.walks, 2);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  EXPECT_EQ(machine.systemLog.lines.back(), "Brivane: [3] Left answering again after 6s");
}

TEST_F(ReadsTest, TheCountdownOfAFailingMonitorCanBeFollowed) {
  left.answers = false;
  coordinator->warmCache(leftID);
  const auto shown = [this] { return coordinator->tracker.status(leftID).displayState(); };
  EXPECT_EQ(shown(), State::retryingNow());
  run(0.5);
  EXPECT_EQ(shown(), State::retryingNow()) << "though it failed at 180 ms";
  run(0.3);
  EXPECT_EQ(shown(), State::nextTry(1));
  run(1.2);  // the second failure was at 1.36 s, the third read is due at 3.36 s
  EXPECT_EQ(shown(), State::nextTry(2));
  run(1.36);
  EXPECT_EQ(shown(), State::retryingNow());
}

TEST_F(ReadsTest, ARetryIsDroppedOnceTheMonitorHasAnsweredOtherwise) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  left.answers = true;
  ASSERT_EQ(coordinator->brightness(leftID), 50);
  left.getCount = 0;
  run(60);
  EXPECT_EQ(left.getCount, 0);
}

TEST_F(ReadsTest, AMonitorThatAnsweredBeforeIsNotRetriedAfterOneFailure) {
  coordinator->warmCache(leftID);
  run(1);
  left.answers = false;
  left.getCount = 0;
  coordinator->warmCache(leftID);
  run(60);
  EXPECT_EQ(left.getCount, 3);
  EXPECT_EQ(machine.systemLog.lines, Notes{"Brivane: [3] Left stopped answering DDC"});
}

TEST_F(ReadsTest, ARetryIsDroppedOnceTheMonitorIsUnplugged) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  unplug(leftID);
  notes();
  run(60);
  EXPECT_THAT(notes(), IsEmpty());
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 1) << "not even a lookup was tried";
}

TEST_F(ReadsTest, ARetryThatIsNotDueStartsNothing) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  notes();
  coordinator->warmCache(leftID);
  run(0.5);
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(ReadsTest, AReadQueuedBeforeTheDisplaySetChangedFillsNothing) {
  setStored("ddcmax.10.20.30", 100);
  coordinator->warmCache(leftID);
  run(0.02);
  coordinator->invalidate();
  coordinator->tracker.warmsInFlight.insert(leftID);
  run(1);
  EXPECT_EQ(notes(), answeredRead(0, "disp0"));
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_THAT(coordinator->levelCache.nativeMaxes, IsEmpty());
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty()) << "the read is no longer in flight";
  EXPECT_FALSE(coordinator->write(60, leftID, false)) << "the channel is not kept";
}

TEST_F(ReadsTest, AFailureOfAnOlderDisplaySetIsIgnored) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.02);
  coordinator->invalidate();
  run(60);
  EXPECT_THAT(coordinator->tracker.readFailures, IsEmpty());
  EXPECT_THAT(coordinator->tracker.failingSince, IsEmpty());
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
  EXPECT_EQ(left.getCount, 3);
}

TEST_F(ReadsTest, AReadNotBegunWhenTheCoordinatorEndsIsNeverMade) {
  coordinator->warmCache(leftID);
  coordinator->resyncCache();
  coordinator->retryNow();
  coordinator.reset();
  run(60);
  EXPECT_THAT(notes(), IsEmpty());
  EXPECT_EQ(machine.registry.walks, 0);
}

TEST_F(ReadsTest, AReadInProgressWhenTheCoordinatorEndsChangesNothing) {
  coordinator->warmCache(leftID);
  run(0.02);
  coordinator.reset();
  run(60);
  EXPECT_EQ(notes(), answeredRead(0, "disp0"));
}

TEST_F(ReadsTest, ARetryThatIsDueWhenTheCoordinatorIsGoneIsNeverMade) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  coordinator.reset();
  notes();
  run(60);
  EXPECT_THAT(notes(), IsEmpty());
}

}  // namespace
}  // namespace brivane
