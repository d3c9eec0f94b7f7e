#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/DisplayReconciler.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Records the reconciler's calls with their virtual times.
struct NotingDisplays : DisplayInvalidating,
                        MenuRefreshing,
                        BuiltInPanelDriving,
                        KeyMappingStore,
                        RelayHotkeySwitching {
  explicit NotingDisplays(CallNotes& callNotes) : notes(callNotes) {}

  void invalidate() override { notes.add("invalidate"); }
  void retryPendingNow() override { notes.add("retry"); }
  void restoreLateMonitors() override { notes.add("late"); }
  bool hasUnresolvedDisplays() const override { return isUnresolved; }
  bool reapplyGammaRamps() override {
    notes.add("reapply");
    return takesGamma;
  }
  void restoreSavedBrightness(std::function<void()> completion) override {
    notes.add("restore");
    completions.push_back(std::move(completion));
  }
  void refresh() override { notes.add("refresh"); }
  void setDrivesBuiltInPanel(bool) override { notes.add("built-in"); }
  bool apply(const RelayKey& up, const RelayKey& down) override {
    notes.add("apply " + std::string(up.name) + "/" + std::string(down.name));
    return false;
  }
  RevertOutcome revert() override {
    notes.add("revert");
    return RevertOutcome::failed;
  }
  bool isApplied(const RelayKey&, const RelayKey&) override {
    notes.add("check");
    return false;
  }
  bool setRelayHotkeysEnabled(bool) override {
    notes.add("hotkeys");
    return false;
  }

  CallNotes& notes;
  bool isUnresolved = false;
  bool takesGamma = true;
  std::vector<std::function<void()>> completions;
};

struct DisplayReconcilerTest : testing::Test {
  DisplayReconcilerTest() {
    machine.displaySystem.add({2, 1, 1, 1, false}, "Left");
    machine.displaySystem.add({3, 1, 1, 2, false}, "Right");
    reconciler = make();
    reconciler->observeDisplayChanges();
    reconciler->observeWake();
  }

  std::unique_ptr<DisplayReconciler> make() {
    return std::make_unique<DisplayReconciler>(machine, world, world, keys,
                                               DisplayArrangement::current(machine.displaySystem));
  }

  void announceScreens() { machine.announcements.screens.announce(); }

  void moveRightMonitor() {
    machine.displaySystem.allScreens[1].frame.x += 10;
    announceScreens();
  }

  std::vector<std::string> notesWithin(Microseconds time) {
    machine.time.runFor(time);
    return machine.notes.take();
  }

  void completeRestores() {
    for (const auto& completion : std::exchange(world.completions, {})) completion();
  }

  FakeMachine machine;
  NotingDisplays world{machine.notes};
  SystemBrightnessKeyController keys{machine, world, world, world};
  std::unique_ptr<DisplayReconciler> reconciler;
};

TEST_F(DisplayReconcilerTest, AnAnnouncementWithoutAChangeDoesNothing) {
  announceScreens();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(notesWithin(10s), IsEmpty());
}

TEST_F(DisplayReconcilerTest, AnAnnouncementWithoutAChangeIsLoggedInVerboseMode) {
  machine.settings.values["VerboseKeyLog"] = {true};
  announceScreens();
  EXPECT_THAT(notesWithin(10s),
              ElementsAre("[0] log Brivane: screen parameters changed but the arrangement did not "
                          "— ignoring"));
}

TEST_F(DisplayReconcilerTest, AChangeInvalidatesAtOnceAndRestoresTwoSecondsLater) {
  machine.settings.values["VerboseKeyLog"] = {true};
  moveRightMonitor();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] invalidate"));
  EXPECT_THAT(notesWithin(2s - 1us), IsEmpty());
  reconciler->stop();
  EXPECT_THAT(notesWithin(1us), ElementsAre("[2000] reapply", "[2000] restore"));
  completeRestores();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[2000] refresh"));
}

TEST_F(DisplayReconcilerTest, EachOfTwoChangesInQuickSuccessionHasARestoreOfItsOwn) {
  moveRightMonitor();
  machine.time.runFor(1s);
  moveRightMonitor();
  reconciler->stop();
  machine.notes.take();
  EXPECT_THAT(notesWithin(1s), ElementsAre("[2000] reapply", "[2000] restore"));
  EXPECT_THAT(notesWithin(1s), ElementsAre("[3000] reapply", "[3000] restore"));
}

TEST_F(DisplayReconcilerTest, MovingAddingRemovingAndResizingAreChanges) {
  auto& screens = machine.displaySystem.allScreens;
  moveRightMonitor();
  screens[0].frame.height = 50;
  announceScreens();
  screens.pop_back();
  announceScreens();
  machine.displaySystem.add({9, 1, 1, 3, false}, "New");
  announceScreens();
  announceScreens();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] invalidate", "[0] invalidate", "[0] invalidate", "[0] invalidate"));
}

TEST_F(DisplayReconcilerTest, EachAnnouncementIsComparedWithTheArrangementLastActedOn) {
  const auto before = machine.displaySystem.allScreens;
  moveRightMonitor();
  machine.displaySystem.allScreens = before;
  announceScreens();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] invalidate", "[0] invalidate"));
}

TEST_F(DisplayReconcilerTest, AWakeReprobesAtOnceEvenIfNothingChanged) {
  machine.announcements.wake.announce();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] invalidate", "[0] apply F19/F20", "[0] reapply", "[0] restore"));
  machine.announcements.screensWake.announce();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] invalidate", "[0] apply F19/F20", "[0] reapply", "[0] restore"));
  completeRestores();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] refresh", "[0] refresh"));
}

TEST_F(DisplayReconcilerTest, AWakeAppliesTheConfiguredRelayAndOnlyWhenItIsSwitchedOn) {
  machine.settings.values["BrightnessKeyRelayUp"] = {std::int64_t{105}};
  reconciler->reprobeAfterWake();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] invalidate", "[0] apply F13/F20", "[0] reapply", "[0] restore"));
  machine.settings.values["SystemBrightnessKeysEnabled"] = {false};
  reconciler->reprobeAfterWake();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] invalidate", "[0] reapply", "[0] restore"));
}

TEST_F(DisplayReconcilerTest, BusesThatAppearTogetherLeadToOneRetryAndDisturbNoMonitorThatAnswers) {
  for (int bus = 0; bus < 16; ++bus) {
    machine.announcements.monitorBuses.announce();
    machine.time.runFor(10ms);
  }
  EXPECT_THAT(notesWithin(10s), ElementsAre("[1000] retry"));
  machine.announcements.monitorBuses.announce();
  EXPECT_THAT(notesWithin(1s), SizeIs(1)) << "a later one leads to another";
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(DisplayReconcilerTest, WhenEverythingIsResolvedThePollingEndsAtTheNextTickWithOneRefresh) {
  reconciler->startRecoveryPolling();
  EXPECT_THAT(notesWithin(2s - 1us), IsEmpty());
  EXPECT_THAT(notesWithin(1us), ElementsAre("[2000] late", "[2000] refresh"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(notesWithin(200s), IsEmpty());
}

TEST_F(DisplayReconcilerTest, WhileAMonitorIsMissingItIsRetriedEveryTwoSeconds) {
  world.isUnresolved = true;
  reconciler->startRecoveryPolling();
  EXPECT_THAT(notesWithin(5s), ElementsAre("[2000] late", "[2000] retry", "[2000] refresh",
                                           "[4000] late", "[4000] retry", "[4000] refresh"));
  world.isUnresolved = false;
  EXPECT_THAT(notesWithin(5s), ElementsAre("[6000] late", "[6000] refresh"));
}

TEST_F(DisplayReconcilerTest, AMonitorThatNeverAnswersIsPolledFor180SecondsAndNoMore) {
  world.isUnresolved = true;
  reconciler->startRecoveryPolling();
  // 89 ticks before the deadline; the tick at the deadline only ends the polling.
  EXPECT_THAT(notesWithin(180s - 1us), SizeIs(3 * 89));
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_THAT(notesWithin(1us), ElementsAre("[180000] late"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(DisplayReconcilerTest, ASecondChangeRestartsThePollingWithANewDeadline) {
  world.isUnresolved = true;
  reconciler->startRecoveryPolling();
  notesWithin(101s);
  reconciler->startRecoveryPolling();
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_THAT(notesWithin(2s), ElementsAre("[103000] late", "[103000] retry", "[103000] refresh"));
  EXPECT_THAT(notesWithin(178s - 1us), SizeIs(3 * 88));
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_THAT(notesWithin(1us), ElementsAre("[281000] late"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(DisplayReconcilerTest, EveryEventRestartsThePollingAndThereIsNeverMoreThanOne) {
  world.isUnresolved = true;
  moveRightMonitor();
  machine.announcements.wake.announce();
  machine.announcements.screensWake.announce();
  EXPECT_EQ(machine.time.timerCount(), 2u) << "the polling and the one delayed restore";
  notesWithin(3s);
  EXPECT_EQ(machine.time.timerCount(), 1u);
}

TEST_F(DisplayReconcilerTest, RefusedGammaTablesAreWrittenAtEachTickUntilAccepted) {
  world.takesGamma = false;
  machine.settings.values["SystemBrightnessKeysEnabled"] = {false};
  reconciler->reprobeAfterWake();
  machine.notes.take();
  EXPECT_THAT(notesWithin(4s),
              ElementsAre("[2000] reapply", "[2000] late", "[2000] retry", "[2000] refresh",
                          "[4000] reapply", "[4000] late", "[4000] retry", "[4000] refresh"));
  world.takesGamma = true;
  EXPECT_THAT(notesWithin(4s), ElementsAre("[6000] reapply", "[6000] late", "[6000] refresh"));
}

TEST_F(DisplayReconcilerTest, GammaTablesRefusedAfterAChangeAreRetriedWhilePollingOnly) {
  world.takesGamma = false;
  world.isUnresolved = true;
  moveRightMonitor();
  EXPECT_THAT(notesWithin(5s),
              ElementsAre("[0] invalidate", "[2000] late", "[2000] retry", "[2000] refresh",
                          "[2000] reapply", "[2000] restore", "[4000] reapply", "[4000] late",
                          "[4000] retry", "[4000] refresh"));
  notesWithin(174s);
  EXPECT_THAT(notesWithin(100s), ElementsAre("[180000] reapply", "[180000] late"));
}

TEST_F(DisplayReconcilerTest, StoppingEndsThePollingAndKeepsTheSubscriptions) {
  world.isUnresolved = true;
  reconciler->startRecoveryPolling();
  reconciler->stop();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_EQ(machine.announcements.screens.observerCount(), 1u);
  EXPECT_EQ(machine.announcements.wake.observerCount(), 1u);
}

TEST_F(DisplayReconcilerTest, NothingIsObservedBeforeSubscribing) {
  const auto other = make();
  EXPECT_EQ(machine.announcements.screens.observerCount(), 1u);
  EXPECT_EQ(machine.announcements.wake.observerCount(), 1u);
  EXPECT_EQ(machine.announcements.screensWake.observerCount(), 1u);
}

TEST_F(DisplayReconcilerTest, NothingHappensAfterDestruction) {
  world.isUnresolved = true;
  moveRightMonitor();
  machine.announcements.wake.announce();
  machine.announcements.monitorBuses.announce();
  machine.notes.take();
  reconciler.reset();
  EXPECT_EQ(machine.announcements.screens.observerCount(), 0u);
  EXPECT_EQ(machine.announcements.wake.observerCount(), 0u);
  EXPECT_EQ(machine.announcements.screensWake.observerCount(), 0u);
  completeRestores();
  EXPECT_THAT(notesWithin(200s), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
