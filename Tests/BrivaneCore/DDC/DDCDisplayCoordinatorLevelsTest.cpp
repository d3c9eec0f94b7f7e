#include <gmock/gmock.h>

#include <limits>

#include "Tests/BrivaneCore/DDC/CoordinatorFixture.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = BrightnessBackendKind;

struct LevelsTest : CoordinatorTest {
  /// Display services drive the monitor from now on, at that level.
  void makeAppleDisplay(DisplayID display, float level) {
    machine.displayServices.install(machine.loader);
    machine.displayServices.canChange[display] = true;
    machine.displayServices.levels[display] = level;
  }

  /// The monitor has a channel, but has not answered on it.
  void findChannelOf(DisplayID display, FakeBus::Channel& channel) {
    channel.answers = false;
    coordinator->warmCache(display);
    run(0.5);
    channel.answers = true;
    notes();
  }
};

// Which backend

TEST_F(LevelsTest, ADisplayHasNoBackendUntilItAnswers) {
  EXPECT_EQ(coordinator->backend(leftID), Kind::none);
  letBothAnswer();
  EXPECT_EQ(coordinator->backend(leftID), Kind::ddc);
}

TEST_F(LevelsTest, AChannelWithoutAnAnswerIsNoBackend) {
  findChannelOf(leftID, left);
  EXPECT_EQ(coordinator->backend(leftID), Kind::none);
}

TEST_F(LevelsTest, AMaximumWithoutAChannelIsNoBackend) {
  coordinator->levelCache.store(50, 100, leftID);
  EXPECT_EQ(coordinator->backend(leftID), Kind::none);
}

TEST_F(LevelsTest, DisplayServicesComeBeforeDDC) {
  makeAppleDisplay(leftID, 0.5F);
  coordinator->warmCache(leftID);
  run(1);
  EXPECT_EQ(coordinator->backend(leftID), Kind::appleDisplay);
}

TEST_F(LevelsTest, ABackendOnceDecidedStaysUntilTheDisplaySetChanges) {
  makeAppleDisplay(rightID, 0.5F);
  letBothAnswer();
  ASSERT_EQ(coordinator->backend(leftID), Kind::ddc);
  ASSERT_EQ(coordinator->backend(rightID), Kind::appleDisplay);
  machine.displayServices.canChange = {{leftID, true}, {rightID, false}};
  EXPECT_EQ(coordinator->backend(leftID), Kind::ddc);
  EXPECT_EQ(coordinator->backend(rightID), Kind::appleDisplay);
  coordinator->invalidate();
  EXPECT_EQ(coordinator->backend(leftID), Kind::appleDisplay);
  EXPECT_EQ(coordinator->backend(rightID), Kind::none);
}

// Reading a level

TEST_F(LevelsTest, ALevelThatIsNotCachedIsReadFromTheMonitorAtOnce) {
  left.current = 128;
  left.max = 255;
  EXPECT_EQ(coordinator->brightness(leftID), 50);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"), keptCapability(40, leftPanel, 255)}));
  EXPECT_EQ(coordinator->levelCache.percents, (std::map<DisplayID, Percent>{{leftID, 50}}));
  EXPECT_EQ(coordinator->levelCache.nativeMaxes,
            (std::map<DisplayID, std::int64_t>{{leftID, 255}}));
  EXPECT_EQ(coordinator->backend(leftID), Kind::ddc) << "its channel is known as well";
}

TEST_F(LevelsTest, ACachedLevelIsGivenWithoutTouchingTheBus) {
  letBothAnswer();
  left.current = 80;
  EXPECT_EQ(coordinator->brightness(leftID), 50);
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(LevelsTest, AMonitorThatDoesNotAnswerHasNoLevelAndChangesNothing) {
  left.answers = false;
  EXPECT_EQ(coordinator->brightness(leftID), std::nullopt);
  EXPECT_EQ(notes(), unansweredRead(0, "disp0"));
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_THAT(coordinator->tracker.readFailures, IsEmpty());
  EXPECT_THAT(coordinator->tracker.failingSince, IsEmpty());
  run(60);
  EXPECT_THAT(notes(), IsEmpty()) << "the monitor is not retried either";
}

TEST_F(LevelsTest, ADirectReadEndsNoOutage) {
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.5);
  left.answers = true;
  notes();
  EXPECT_EQ(coordinator->brightness(leftID), 50);
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 1);
  EXPECT_TRUE(coordinator->tracker.failingSince.contains(leftID));
  EXPECT_TRUE(coordinator->tracker.nextRetry.contains(leftID));
}

TEST_F(LevelsTest, ADirectReadWaitsForReadsThatWereQueuedBefore) {
  coordinator->warmCache(rightID);
  EXPECT_EQ(coordinator->brightness(leftID), 50);
  EXPECT_EQ(now(), Instant(fromSeconds(0.08)));
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp1"), answeredRead(40, "disp0"),
                             keptCapability(80, leftPanel, 100)}));
}

TEST_F(LevelsTest, ADisplayWithoutAChannelHasNoLevel) {
  EXPECT_EQ(coordinator->brightness(99), std::nullopt);
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(LevelsTest, AnAppleDisplaysLevelIsReadEachTimeAndCached) {
  makeAppleDisplay(leftID, 0.5F);
  EXPECT_EQ(coordinator->brightness(leftID), 50);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  machine.displayServices.levels[leftID] = 0.7F;
  EXPECT_EQ(coordinator->brightness(leftID), 70);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 70);
  machine.displayServices.getStatus = 1;
  EXPECT_EQ(coordinator->brightness(leftID), std::nullopt) << "not even the cached one";
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 70);
  EXPECT_THAT(notes(), IsEmpty());
}

// Writing a level

TEST_F(LevelsTest, AWriteGoesToTheMonitorInItsOwnUnitsAndIsRemembered) {
  left.max = 255;
  letBothAnswer();
  EXPECT_TRUE(coordinator->write(50, leftID, false));
  EXPECT_EQ(notes(), joined({busSet(10'000, "disp0", "84 03 10 00 80 79"),
                             {at(10'020, "set brightness.10.20.30=50")}}));
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  EXPECT_EQ(coordinator->levelCache.nativeMaxes.at(leftID), 255);
}

TEST_F(LevelsTest, AnExplicitWriteIsAnnouncedBeforeItIsMade) {
  letBothAnswer();
  EXPECT_TRUE(coordinator->write(60, leftID, true));
  EXPECT_EQ(notes(), joined({{at(10'000, "explicit 3")},
                             busSet(10'000, "disp0", "84 03 10 00 3C C5"),
                             {at(10'020, "set brightness.10.20.30=60")}}));
}

TEST_F(LevelsTest, AWriteIsLimitedToTheRangeOfTheHardware) {
  letBothAnswer();
  EXPECT_TRUE(coordinator->write(140, leftID, false));
  EXPECT_EQ(left.current, 100);
  EXPECT_EQ(stored("brightness.10.20.30"), 100);
  EXPECT_TRUE(coordinator->write(-5, leftID, false));
  EXPECT_EQ(left.current, 0);
  EXPECT_EQ(stored("brightness.10.20.30"), 0);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 0);
}

TEST_F(LevelsTest, EveryWriteGoesOutEvenIfNothingChanges) {
  letBothAnswer();
  EXPECT_TRUE(coordinator->write(50, leftID, false));
  EXPECT_TRUE(coordinator->write(50, leftID, false));
  EXPECT_EQ(left.setCount, 4);
}

TEST_F(LevelsTest, AWriteWithoutAChannelFailsAndStartsExactlyOneRead) {
  setStored("ddcmax.10.20.30", 100);
  EXPECT_FALSE(coordinator->write(60, leftID, true));
  EXPECT_FALSE(coordinator->write(70, leftID, true));
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"), keptCapability(40, leftPanel, 100)}));
}

TEST_F(LevelsTest, AWriteWithoutAnyMaximumFailsAndStartsARead) {
  findChannelOf(leftID, left);
  coordinator->tracker.nextRetry.clear();
  ASSERT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
  EXPECT_FALSE(coordinator->write(60, leftID, true));
  EXPECT_THAT(coordinator->tracker.warmsInFlight, ElementsAre(leftID));
  EXPECT_EQ(left.setCount, 0);
  EXPECT_THAT(notes(), IsEmpty()) << "the write is not announced";
}

TEST_F(LevelsTest, AWriteDoesNotWaitForAReadThatIsUnderWay) {
  letBothAnswer();
  machine.time.after(fromSeconds(0.005), [this] { coordinator->write(60, leftID, false); });
  coordinator->warmCache(rightID);
  run(1);
  EXPECT_EQ(notes(),
            joined({{at(10'000, "write disp1 55/81: 82 01 10 FD")},
                    busSet(10'005, "disp0", "84 03 10 00 3C C5"),
                    {at(10'025, "set brightness.10.20.30=60"), at(10'040, "read disp1 55/81: 12")},
                    keptCapability(10'040, rightPanel, 100)}));
}

TEST_F(LevelsTest, AProbeWaitsForReadsThatWereQueuedBefore) {
  coordinator->warmCache(rightID);
  EXPECT_EQ(coordinator->probe(leftID), (VCPReading{50, 100}));
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp1"), answeredRead(40, "disp0")}));
}

TEST_F(LevelsTest, AnAppleDisplayThatCanNotBeReadHasNoRangeAndIsNotAskedOverTheBus) {
  makeAppleDisplay(leftID, 0.5F);
  machine.displayServices.getStatus = 1;
  EXPECT_EQ(coordinator->refreshTargets().at(0).ddcRange, std::nullopt);
  EXPECT_FALSE(coordinator->tracker.attemptStartedAt.contains(leftID));
}

TEST_F(LevelsTest, ASetThroughDisplayServicesIsProtectedFromAnOlderReadingToo) {
  makeAppleDisplay(leftID, 0.5F);
  coordinator->warmCache(leftID);
  run(1);
  ASSERT_TRUE(coordinator->write(30, leftID, true));
  coordinator->resyncCache();
  run(1);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 30);
}

TEST_F(LevelsTest, AWriteToAMonitorThatIsSilentNowUsesTheSavedMaximum) {
  setStored("ddcmax.10.20.30", 255);
  findChannelOf(leftID, left);
  EXPECT_TRUE(coordinator->write(50, leftID, true));
  EXPECT_EQ(notes(), joined({{at(500, "explicit 3")},
                             busSet(500, "disp0", "84 03 10 00 80 79"),
                             {at(520, "set brightness.10.20.30=50")}}));
  EXPECT_THAT(coordinator->levelCache.nativeMaxes, IsEmpty()) << "the monitor has not answered yet";
}

TEST_F(LevelsTest, TheMaximumOfThisRunComesBeforeTheSavedOne) {
  letBothAnswer();
  setStored("ddcmax.10.20.30", 255);
  EXPECT_TRUE(coordinator->write(50, leftID, false));
  EXPECT_EQ(left.current, 50);
}

TEST_F(LevelsTest, AWriteThatTheBusRefusesChangesNothing) {
  letBothAnswer();
  left.nextWriteStatuses = {1};
  EXPECT_FALSE(coordinator->write(60, leftID, true));
  EXPECT_EQ(notes(),
            (Notes{at(10'000, "explicit 3"), at(10'010, "write disp0 55/81: 84 03 10 00 3C C5")}));
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 50);
  EXPECT_EQ(coordinator->tracker.readFailures.at(leftID), 0)
      << "the monitor doesn't count as failing";
  EXPECT_THAT(coordinator->tracker.failingSince, IsEmpty());
  left.current = 30;
  coordinator->resyncCache();
  run(0.5);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 30)
      << "the refused write doesn't count as fresh";
}

TEST_F(LevelsTest, AMaximumBeyondTheWireIsAProgrammingError) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  setStored("ddcmax.10.20.30", 70'000);
  findChannelOf(leftID, left);
  EXPECT_DEATH(coordinator->write(100, leftID, false), "does not fit the 16 bits");
  setStored("ddcmax.10.20.30", 65'535);
  EXPECT_TRUE(coordinator->write(100, leftID, false));
  EXPECT_EQ(left.current, 65'535);
}

TEST_F(LevelsTest, AnAppleDisplayIsWrittenThroughDisplayServices) {
  makeAppleDisplay(leftID, 0.5F);
  EXPECT_TRUE(coordinator->write(30, leftID, false));
  EXPECT_EQ(machine.displayServices.levels[leftID], 0.3F);
  EXPECT_TRUE(coordinator->write(170, leftID, true));
  EXPECT_EQ(machine.displayServices.levels[leftID], 1.0F);
  EXPECT_EQ(coordinator->levelCache.percents.at(leftID), 100);
  EXPECT_EQ(notes(), (Notes{at(0, "set brightness.10.20.30=30"), at(0, "explicit 3"),
                            at(0, "set brightness.10.20.30=100")}));
}

TEST_F(LevelsTest, AnExplicitWriteToAnAppleDisplayIsAnnouncedBeforeItIsMade) {
  makeAppleDisplay(leftID, 0.5F);
  float levelWhenAnnounced = 0;
  DDCDisplayCoordinator announcing(machine, appleDisplays, registry, store, [&](DisplayID display) {
    levelWhenAnnounced = machine.displayServices.levels[display];
  });
  EXPECT_TRUE(announcing.write(30, leftID, true));
  EXPECT_EQ(levelWhenAnnounced, 0.5F);
}

TEST_F(LevelsTest, AnAppleDisplayThatRefusesChangesNothing) {
  makeAppleDisplay(leftID, 0.5F);
  machine.displayServices.setStatus = 1;
  EXPECT_FALSE(coordinator->write(30, leftID, true));
  EXPECT_EQ(notes(), Notes{at(0, "explicit 3")}) << "announced, as it was asked for";
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
}

// Levels without touching the bus

TEST_F(LevelsTest, TheLastKnownLevelIsTheCachedOne) {
  setStored("brightness.10.20.30", 80);
  letBothAnswer();
  EXPECT_EQ(coordinator->lastKnownPercent(leftID), 50);
}

TEST_F(LevelsTest, TheLastKnownLevelOfARememberedMonitorIsTheSavedOne) {
  machine.settings.values["ddc.10.20.30"] = {true};
  setStored("ddcmax.10.20.30", 100);
  setStored("brightness.10.20.30", 140);
  EXPECT_EQ(coordinator->lastKnownPercent(leftID), 100);
  EXPECT_THAT(notes(), IsEmpty());
  machine.settings.values.erase("brightness.10.20.30");
  EXPECT_EQ(coordinator->lastKnownPercent(leftID), std::nullopt);
}

TEST_F(LevelsTest, WithoutASavedMaximumNoSavedLevelIsKnown) {
  machine.settings.values["ddc.10.20.30"] = {true};
  setStored("brightness.10.20.30", 80);
  EXPECT_EQ(coordinator->lastKnownPercent(leftID), std::nullopt);
}

TEST_F(LevelsTest, AMonitorThatNeverAnsweredHasNoKnownLevel) {
  setStored("ddcmax.10.20.30", 100);
  setStored("brightness.10.20.30", 80);
  EXPECT_EQ(coordinator->lastKnownPercent(leftID), std::nullopt);
}

TEST_F(LevelsTest, AMonitorIsKnownOnceItAnsweredInThisRun) {
  EXPECT_FALSE(coordinator->isKnownDDC(leftID));
  letBothAnswer();
  machine.settings.values.clear();
  EXPECT_TRUE(coordinator->isKnownDDC(leftID));
}

TEST_F(LevelsTest, AMonitorThatIsRememberedIsKnownForThreeMinutesOfOutage) {
  machine.settings.values["ddc.10.20.30"] = {true};
  left.answers = false;
  coordinator->warmCache(leftID);
  run(0.18);  // the first failure
  EXPECT_TRUE(coordinator->isKnownDDC(leftID));
  run(179.999999);
  EXPECT_TRUE(coordinator->isKnownDDC(leftID));
  run(0.000001);
  EXPECT_FALSE(coordinator->isKnownDDC(leftID));
  left.answers = true;
  run(6);
  EXPECT_TRUE(coordinator->isKnownDDC(leftID)) << "the monitor is still retried";
}

TEST_F(LevelsTest, AStoredNoIsDeletedWhenItIsRead) {
  machine.settings.values["ddc.10.20.30"] = {false};
  EXPECT_FALSE(coordinator->isKnownDDC(leftID));
  EXPECT_EQ(notes(), Notes{at(0, "remove ddc.10.20.30")});
}

// Targets

TEST_F(LevelsTest, TargetsListEveryOnlineDisplayInOrder) {
  machine.displaySystem.add({1, 1, 1, 1, true}, "Inside");
  letBothAnswer();
  const PercentRange full{0, 100};
  EXPECT_THAT(coordinator->refreshTargets(),
              ElementsAre(DisplayTarget{leftID, "Left", false, full},
                          DisplayTarget{rightID, "Right", false, full},
                          DisplayTarget{1, "Inside", true, std::nullopt}));
  EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(LevelsTest, ATargetWithoutAKnownLevelHasNoRangeAndIsRead) {
  coordinator->levelCache.percents[rightID] = 10;
  const auto targets = coordinator->refreshTargets();
  EXPECT_EQ(targets.at(0).ddcRange, std::nullopt);
  EXPECT_EQ(targets.at(1).ddcRange, (PercentRange{0, 100}));
  run(1);
  EXPECT_EQ(notes(), joined({answeredRead(0, "disp0"), keptCapability(40, leftPanel, 100)}));
  EXPECT_EQ(coordinator->refreshTargets().at(0).ddcRange, (PercentRange{0, 100}));
}

TEST_F(LevelsTest, AnAppleTargetHasARangeWhileItCanBeRead) {
  machine.displaySystem.add({1, 1, 1, 1, true}, "Inside");
  makeAppleDisplay(1, 0.25F);
  EXPECT_EQ(coordinator->refreshTargets().at(2),
            (DisplayTarget{1, "Inside", true, PercentRange{0, 100}}));
  EXPECT_EQ(coordinator->levelCache.percents.at(1), 25);
  machine.displayServices.getStatus = 1;
  EXPECT_EQ(coordinator->refreshTargets().at(2).ddcRange, std::nullopt);
  EXPECT_FALSE(coordinator->tracker.attemptStartedAt.contains(1))
      << "the display is not asked over the bus";
}

TEST_F(LevelsTest, TheBuiltInPanelIsNeverReadOverDDC) {
  machine.displaySystem.online = {{1, 1, 1, 1, true}};
  EXPECT_EQ(coordinator->refreshTargets().at(0).ddcRange, std::nullopt);
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
  coordinator->levelCache.percents[1] = 10;
  EXPECT_EQ(coordinator->refreshTargets().at(0).ddcRange, std::nullopt);
  EXPECT_THAT(coordinator->tracker.warmsInFlight, IsEmpty());
}

TEST_F(LevelsTest, AProbeGivesTheRawReadingAndKeepsNothing) {
  left.current = 200;
  left.max = 255;
  EXPECT_EQ(coordinator->probe(leftID), (VCPReading{200, 255}));
  EXPECT_EQ(notes(), answeredRead(0, "disp0"));
  EXPECT_EQ(now(), Instant(fromSeconds(0.04)));
  EXPECT_THAT(coordinator->levelCache.percents, IsEmpty());
  EXPECT_EQ(coordinator->backend(leftID), Kind::none);
}

TEST_F(LevelsTest, AProbeOfASilentOrUnknownDisplayGivesNothing) {
  left.answers = false;
  EXPECT_EQ(coordinator->probe(leftID), std::nullopt);
  EXPECT_EQ(coordinator->probe(99), std::nullopt);
  EXPECT_THAT(coordinator->tracker.readFailures, IsEmpty());
}

// The queue

class QueueNotingMachine : public FakeMachine {
 public:
  struct NotingRuntime : VirtualRuntime {
    std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                                 QueueQuality quality) override {
      labels.push_back(label);
      qualities.push_back(quality);
      return VirtualRuntime::makeSerialQueue(label, quality);
    }
    std::vector<std::string> labels;
    std::vector<QueueQuality> qualities;
  };

  Runtime& runtime() override { return noting; }
  NotingRuntime noting;
};

TEST(DDCQueue, IsOneSerialQueueWithItsNameAndItsUrgency) {
  QueueNotingMachine machine;
  BrightnessStore store(machine.settings, machine.displaySystem);
  const DDCDisplayCoordinator coordinator(
      machine, std::make_shared<AppleDisplayBackend>(machine.loader, machine.displaySystem),
      std::make_shared<DisplayRegistry>(machine.displaySystem, machine.registry, machine.loader,
                                        machine.noting),
      store, [](DisplayID) {});
  EXPECT_THAT(machine.noting.labels, ElementsAre("com.quorrel.brivane.ddc"));
  EXPECT_THAT(machine.noting.qualities, ElementsAre(QueueQuality::userInitiated));
}

}  // namespace
}  // namespace brivane
