#include <gmock/gmock.h>

#include "Tests/BrivaneCore/DDC/CoordinatorFixture.h"

namespace brivane {
namespace {

using testing::IsEmpty;

struct RestoreTest : CoordinatorTest {
  DDCDisplayCoordinator::Completion noteDone() {
    return [this] { machine.notes.add("done"); };
  }

  /// Whether a level that the monitor was given by its own buttons is saved.
  bool savesTheMonitorsLevel(FakeBus::Channel& channel, const std::string& key) {
    run(10);
    channel.current = static_cast<std::uint16_t>(channel.current == 33 ? 34 : 33);
    coordinator->resyncCache();
    run(1);
    return stored(key) == channel.current;
  }

  /// A new display set is restored while the left monitor sleeps; both have a saved level.
  void restoreWithoutTheLeft() {
    letBothAnswer();
    setStored("brightness.10.20.30", 80);
    setStored("brightness.11.21.31", 25);
    left.writeStatus = 1;
    coordinator->invalidate();
    coordinator->restoreSavedBrightness({});
    run(0.5);
    notes();
  }

  /// The left monitor wakes and is read by the retry that comes a second after the first failure.
  void letTheLeftAnswer() {
    left.writeStatus = 0;
    run(2);
    notes();
  }
};

// The first read of everything

TEST_F(RestoreTest, PrewarmReadsAllMonitorsAndThenCallsBack) {
  coordinator->prewarm(noteDone());
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"),
                             answeredRead(40, "disp1"),
                             keptCapability(80, leftPanel, 100),
                             keptCapability(80, rightPanel, 100),
                             {at(80, "done")}}));
  EXPECT_EQ(coordinator->levelCache.percents,
            (std::map<DisplayID, Percent>{{leftID, 50}, {rightID, 50}}));
  EXPECT_EQ(coordinator->backend(rightID), BrightnessBackendKind::ddc);
}

TEST_F(RestoreTest, PrewarmLeavesOutBuiltInAndAppleDisplays) {
  machine.displaySystem.add({1, 1, 1, 1, true}, "Inside");
  machine.displayServices.install(machine.loader);
  machine.displayServices.canChange[rightID] = true;
  coordinator->prewarm(noteDone());
  run(1);
  EXPECT_EQ(
      notes(),
      joined({answeredRead(0, "disp0"), keptCapability(40, leftPanel, 100), {at(40, "done")}}));
}

TEST_F(RestoreTest, PrewarmNeedsNoCallback) {
  coordinator->prewarm({});
  run(1);
  EXPECT_EQ(coordinator->levelCache.percents.size(), 2U);
}

TEST_F(RestoreTest, PrewarmNotesAMonitorThatDoesNotAnswerAndRetriesIt) {
  left.answers = false;
  coordinator->prewarm(noteDone());
  run(1.5);
  // Known and not answering from 220 ms, when the results came in; retried a second later.
  EXPECT_EQ(notes(), joined({unansweredRead(0, "disp0"),
                             answeredRead(180, "disp1"),
                             {at(220, "log Brivane: [3] Left stopped answering DDC")},
                             keptCapability(220, rightPanel, 100),
                             {at(220, "done")},
                             unansweredRead(1'220, "disp0")}));
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 2);
}

TEST_F(RestoreTest, PrewarmEndsAnOutage) {
  left.answers = false;
  coordinator->prewarm({});
  run(0.5);
  left.answers = true;
  coordinator->prewarm({});
  run(0.4);
  EXPECT_EQ(machine.systemLog.lines.back(), "Brivane: [3] Left answering again after 0s");
  EXPECT_THAT(coordinator->tracker.failingSince, IsEmpty());
}

TEST_F(RestoreTest, PrewarmNotesNoFailureOfADisplayWithoutAChannel) {
  machine.registry.entries.clear();
  coordinator->prewarm(noteDone());
  run(60);
  EXPECT_EQ(notes(), Notes{at(0, "done")});
  EXPECT_THAT(coordinator->tracker.readFailures, IsEmpty());
}

TEST_F(RestoreTest, PrewarmWalksTheRegistryFirstUnlessItJustDid) {
  coordinator->prewarm({});
  run(3);
  EXPECT_EQ(machine.registry.walks, 1);
  coordinator->prewarm({});
  run(3);
  EXPECT_EQ(machine.registry.walks, 1);
  coordinator->prewarm({});
  run(3);
  EXPECT_EQ(machine.registry.walks, 2);
}

TEST_F(RestoreTest, PrewarmIsNoAttemptAndDelaysNone) {
  coordinator->prewarm({});
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
  EXPECT_THAT(coordinator->tracker.attemptStartedAt, IsEmpty());
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(left.getCount, 2);
}

TEST_F(RestoreTest, RestoringAnOlderDisplaySetStillTriesToWrite) {
  setStored("brightness.10.20.30", 80);
  coordinator->restoreSavedBrightness(noteDone());
  run(0.06);
  coordinator->invalidate();
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"),
                             answeredRead(40, "disp1"),
                             {at(80, "done")},
                             answeredRead(80, "disp0"),
                             keptCapability(120, leftPanel, 100)}));
}

TEST_F(RestoreTest, PrewarmOfAnOlderDisplaySetFillsNothingButCallsBack) {
  setStored("ddcmax.10.20.30", 100);
  coordinator->prewarm(noteDone());
  run(0.06);
  coordinator->invalidate();
  run(1);
  EXPECT_EQ(notes(),
            joined({answeredRead(0, "disp0"), answeredRead(40, "disp1"), {at(80, "done")}}));
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_FALSE(coordinator->write(60, leftID, false)) << "the channel is not kept";
}

TEST_F(RestoreTest, TheCallbackComesEvenWhenTheCoordinatorHasGone) {
  coordinator->prewarm(noteDone());
  coordinator->restoreSavedBrightness(noteDone());
  coordinator.reset();
  run(1);
  EXPECT_EQ(notes(), (Notes{at(0, "done"), at(0, "done")})) << "and nothing is read or written";
}

TEST_F(RestoreTest, TheCallbackComesEvenWhenTheCoordinatorGoesWhileReading) {
  setStored("brightness.10.20.30", 80);
  coordinator->restoreSavedBrightness(noteDone());
  run(0.06);
  coordinator.reset();
  run(1);
  EXPECT_EQ(notes(),
            joined({answeredRead(0, "disp0"), answeredRead(40, "disp1"), {at(80, "done")}}));
}

// Restoring saved levels

TEST_F(RestoreTest, SavedLevelsAreWrittenBackAfterTheReads) {
  setStored("brightness.10.20.30", 80);
  setStored("brightness.11.21.31", 25);
  coordinator->restoreSavedBrightness(noteDone());
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"),
                             answeredRead(40, "disp1"),
                             keptCapability(80, leftPanel, 100),
                             keptCapability(80, rightPanel, 100),
                             busSet(80, "disp0", "84 03 10 00 50 A9"),
                             {at(100, "set brightness.10.20.30=80")},
                             busSet(100, "disp1", "84 03 10 00 19 E0"),
                             {at(120, "set brightness.11.21.31=25"), at(120, "done")}}))
      << "and no write is announced as the user's";
}

TEST_F(RestoreTest, AMonitorWithoutASavedLevelIsNotWrittenTo) {
  setStored("brightness.10.20.30", 80);
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(left.setCount, 2);
  EXPECT_EQ(right.setCount, 0);
}

TEST_F(RestoreTest, SavedLevelsOutsideTheHardwaresRangeAreLimited) {
  setStored("brightness.10.20.30", 140);
  setStored("brightness.11.21.31", -5);
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(left.current, 100);
  EXPECT_EQ(right.current, 0);
  EXPECT_EQ(stored("brightness.10.20.30"), 100);
  EXPECT_EQ(stored("brightness.11.21.31"), 0);
}

TEST_F(RestoreTest, AMonitorThatDoesNotAnswerIsWrittenToIfItsMaximumIsRemembered) {
  setStored("brightness.10.20.30", 80);
  setStored("ddcmax.10.20.30", 100);
  left.answers = false;
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(left.current, 80);
}

TEST_F(RestoreTest, AnAppleDisplayIsLeftToTheSystem) {
  machine.displayServices.install(machine.loader);
  machine.displayServices.canChange[leftID] = true;
  machine.displayServices.levels[leftID] = 0.5F;
  setStored("brightness.10.20.30", 80);
  coordinator->invalidate();
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(machine.displayServices.levels[leftID], 0.5F);
  EXPECT_EQ(left.setCount, 0);
  EXPECT_EQ(stored("brightness.10.20.30"), 80);
  coordinator->warmCache(leftID);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30")) << "nothing awaits restoring";
}

TEST_F(RestoreTest, TheBuiltInPanelIsNeverRestored) {
  machine.displaySystem.online.front().isBuiltIn = true;
  setStored("brightness.10.20.30", 80);
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(left.setCount, 0);
  EXPECT_THAT(coordinator->tracker.attemptStartedAt, IsEmpty()) << "no read is even tried";
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

// A new display set

TEST_F(RestoreTest, ANewDisplaySetForgetsWhatWasLearntAboutTheOld) {
  letBothAnswer();
  coordinator->tracker.readFailures[leftID] = 2;
  coordinator->tracker.nextRetry[leftID] = now();
  coordinator->tracker.warmsInFlight.insert(leftID);
  coordinator->tracker.failingSince[leftID] = now();
  coordinator->invalidate();
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_THAT(coordinator->levelCache.nativeMaxes, IsEmpty());
  EXPECT_EQ(coordinator->backend(leftID), BrightnessBackendKind::none);
  EXPECT_THAT(coordinator->tracker.readFailures, IsEmpty());
  EXPECT_THAT(coordinator->tracker.nextRetry, IsEmpty());
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
  EXPECT_TRUE(coordinator->tracker.failingSince.contains(leftID)) << "outages go on";
  EXPECT_FALSE(coordinator->write(60, leftID, false)) << "the channel must be found again first";
}

TEST_F(RestoreTest, ANewDisplaySetForgetsWhenMonitorsWereWrittenTo) {
  letBothAnswer();
  ASSERT_TRUE(coordinator->write(80, leftID, false));
  coordinator->invalidate();
  coordinator->prewarm({});
  run(0.5);
  left.current = 30;
  coordinator->resyncCache();
  run(0.5);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 30) << "within the quiet period";
}

TEST_F(RestoreTest, ANewDisplaySetKeepsWhenAttemptsStarted) {
  coordinator->warmCache(leftID);
  coordinator->invalidate();
  EXPECT_TRUE(coordinator->tracker.attemptStartedAt.contains(leftID));
}

TEST_F(RestoreTest, ANewDisplaySetRescansTheRegistryAtOnce) {
  coordinator->prewarm({});
  run(1);
  coordinator->invalidate();
  run(0);
  EXPECT_EQ(machine.registry.walks, 2);
}

TEST_F(RestoreTest, AnOutageThatOutlastsADisplayChangeIsReportedOnce) {
  left.answers = false;
  coordinator->prewarm({});
  run(0.5);
  coordinator->invalidate();
  coordinator->prewarm({});
  run(0.5);
  left.answers = true;
  run(10);  // The outage began at 0.22 s; the read that ends it is done at 1.76 s.
  EXPECT_EQ(machine.systemLog.lines, (Notes{"Brivane: [3] Left stopped answering DDC",
                                            "Brivane: [3] Left answering again after 2s"}));
}

TEST_F(RestoreTest, ASavedLevelIsNotOverwrittenBeforeItWasWrittenBack) {
  setStored("brightness.10.20.30", 80);
  coordinator->invalidate();
  coordinator->prewarm({});
  run(1);
  EXPECT_FALSE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 33) << "the cache follows all the same";
  EXPECT_EQ(stored("brightness.10.20.30"), 80);
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_EQ(left.current, 80);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

TEST_F(RestoreTest, ASavedLevelWhoseWriteFailedIsKept) {
  setStored("brightness.10.20.30", 80);
  coordinator->invalidate();
  left.nextWriteStatuses = {0, 1};  // the read's request, then the set
  coordinator->restoreSavedBrightness({});
  run(1);
  ASSERT_EQ(left.setCount, 1);
  EXPECT_FALSE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
  EXPECT_EQ(stored("brightness.10.20.30"), 80);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 33);
}

// Monitors that come up after the restore

TEST_F(RestoreTest, AMonitorThatAnswersOnlyAfterTheRestoreGetsItsSavedLevelThen) {
  restoreWithoutTheLeft();
  letTheLeftAnswer();
  coordinator->restoreLateMonitors();
  EXPECT_EQ(notes(), joined({busSet(12'500, "disp0", "84 03 10 00 50 A9"),
                             {at(12'520, "set brightness.10.20.30=80")}}))
      << "nothing is read, no other monitor is written to, and no write is the user's";
  coordinator->restoreLateMonitors();
  EXPECT_THAT(notes(), IsEmpty());
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

TEST_F(RestoreTest, AMonitorThatStillDoesNotAnswerIsLeftAlone) {
  restoreWithoutTheLeft();
  coordinator->restoreLateMonitors();
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(RestoreTest, ALateMonitorThatRefusesItsLevelGetsItTheNextTime) {
  restoreWithoutTheLeft();
  letTheLeftAnswer();
  left.nextWriteStatuses = {1};
  coordinator->restoreLateMonitors();
  EXPECT_EQ(left.current, 50);
  coordinator->restoreLateMonitors();
  EXPECT_EQ(left.current, 80);
}

TEST_F(RestoreTest, ALateMonitorKeepsWhatTheUserSetMeanwhile) {
  restoreWithoutTheLeft();
  letTheLeftAnswer();
  ASSERT_TRUE(coordinator->write(35, leftID, true));
  coordinator->restoreLateMonitors();
  EXPECT_EQ(left.current, 35);
  EXPECT_EQ(stored("brightness.10.20.30"), 35);
}

TEST_F(RestoreTest, AFailedRestoreWithoutANewDisplaySetIsNotRepeated) {
  letBothAnswer();
  setStored("brightness.10.20.30", 80);
  left.nextWriteStatuses = {0, 1};  // the read's request, then the set
  coordinator->restoreSavedBrightness({});
  run(1);
  ASSERT_EQ(left.setCount, 1);
  coordinator->restoreLateMonitors();
  EXPECT_EQ(left.current, 50);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

TEST_F(RestoreTest, OnlyANewDisplaySetMakesASilentMonitorAwaitItsLevel) {
  setStored("brightness.10.20.30", 80);
  left.writeStatus = 1;
  coordinator->restoreSavedBrightness({});
  run(0.5);
  coordinator->retryNow();
  coordinator->retryPendingNow();
  letTheLeftAnswer();
  coordinator->restoreLateMonitors();
  EXPECT_EQ(left.current, 50);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

TEST_F(RestoreTest, WithoutASavedLevelNothingAwaitsRestoring) {
  setStored("brightness.10.20.30", 80);
  coordinator->invalidate();
  machine.settings.values.erase("brightness.10.20.30");
  coordinator->restoreSavedBrightness({});
  run(1);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

TEST_F(RestoreTest, AMonitorWithoutASavedLevelNeverAwaitsRestoring) {
  coordinator->invalidate();
  coordinator->prewarm({});
  run(1);
  EXPECT_TRUE(savesTheMonitorsLevel(left, "brightness.10.20.30"));
}

}  // namespace
}  // namespace brivane
