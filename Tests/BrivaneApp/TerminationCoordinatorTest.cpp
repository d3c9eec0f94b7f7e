#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/TerminationCoordinator.h"
#include "Tests/Support/ControllerBench.h"
#include "Tests/Support/FakeFrame.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct NotingStoppable : Stoppable {
  NotingStoppable(std::string partName, CallNotes& callNotes)
      : name(std::move(partName)), notes(callNotes) {}
  void stop() override { notes.add("stop " + name); }
  std::string name;
  CallNotes& notes;
};

struct NotingMapping : KeyMappingStore {
  explicit NotingMapping(CallNotes& callNotes) : notes(callNotes) {}
  bool apply(const RelayKey&, const RelayKey&) override { return false; }
  RevertOutcome revert() override {
    notes.add("revert");
    return outcome;
  }
  bool isApplied(const RelayKey&, const RelayKey&) override { return false; }
  RevertOutcome outcome = RevertOutcome::removed;
  CallNotes& notes;
};

struct TerminationCoordinatorTest : testing::Test, FakeEffectsBench {
  TerminationCoordinatorTest() {
    machine.access.trusted = true;
    hotkeys.start();
    extendedBrightener->witness = [this] {
      machine.notes.add("effects end");
      return "";
    };
    machine.notes.take();
  }

  FakeMachine& machine = bench.machine;
  FakeFrame frame{machine.time, machine.notes};
  NotingMapping mapping{machine.notes};
  HotkeyManager hotkeys{machine, [](const Adjustment&, HotkeySource) { return true; }};
  NotingStoppable first{"first", machine.notes};
  NotingStoppable second{"second", machine.notes};
  TerminationCoordinator termination{controller, mapping, hotkeys, {&first, &second}};
};

constexpr auto ending = {"[0] effects end",          "[0] stop first",
                         "[0] stop second",          "[0] revert",
                         "[0] disable tap",          "[0] remove tap",
                         "[0] unregister hotkey 1",  "[0] unregister hotkey 2",
                         "[0] remove hotkey handler"};

TEST_F(TerminationCoordinatorTest, EffectsEndThenTimersThenTheMappingThenTheHotkeys) {
  termination.performTerminationCleanup();
  EXPECT_THAT(machine.notes.take(), testing::ElementsAreArray(ending));
  EXPECT_THAT(calls,
              ElementsAre("dimmer restore all", "gamma restore all", "extended restore all"));
}

TEST_F(TerminationCoordinatorTest, AMappingThatCannotBeRevertedDoesNotStopTheRest) {
  mapping.outcome = RevertOutcome::failed;
  termination.performTerminationCleanup();
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
}

TEST_F(TerminationCoordinatorTest, TheSignalIsObservedOnceTheHandlerIsInstalled) {
  EXPECT_EQ(machine.announcements.termination.observerCount(), 0u);
  termination.installSigtermHandler(machine.announcements, frame.app);
  EXPECT_EQ(machine.announcements.termination.observerCount(), 1u);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(TerminationCoordinatorTest, TheSignalCleansUpAndThenExitsWithStatusZero) {
  termination.installSigtermHandler(machine.announcements, frame.app);
  machine.announcements.termination.announce();
  std::vector<std::string> expected(ending.begin(), ending.end());
  expected.emplace_back("[0] exit 0");
  EXPECT_EQ(machine.notes.take(), expected);
  EXPECT_EQ(frame.app.exitStatus, 0);
}

TEST_F(TerminationCoordinatorTest, TheSignalIsNotObservedAfterDestruction) {
  {
    TerminationCoordinator other(controller, mapping, hotkeys, {});
    other.installSigtermHandler(machine.announcements, frame.app);
  }
  EXPECT_EQ(machine.announcements.termination.observerCount(), 0u);
}

}  // namespace
}  // namespace brivane
