#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/AccessibilityRetryController.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint32_t f1 = 122;
constexpr std::uint32_t f2 = 120;
constexpr std::uint32_t f19 = 80;

/// Records refreshes among the machine's calls.
struct NotingMenu : MenuRefreshing {
  explicit NotingMenu(CallNotes& callNotes) : notes(callNotes) {}
  void refresh() override { notes.add("refresh"); }
  CallNotes& notes;
};

struct AccessibilityRetryControllerTest : testing::Test {
  AccessibilityRetryControllerTest() {
    hotkeys.start();
    machine.notes.take();
  }

  std::vector<std::string> notesWithin(Microseconds time) {
    machine.time.runFor(time);
    return machine.notes.take();
  }

  FakeMachine machine;
  NotingMenu menu{machine.notes};
  HotkeyManager hotkeys{machine, [](const Adjustment&, HotkeySource) { return true; }};
  AccessibilityRetryController retry{machine, hotkeys, menu};
};

TEST_F(AccessibilityRetryControllerTest, WithoutTheGrantNoTapIsEverTried) {
  retry.start();
  EXPECT_THAT(notesWithin(10min), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_EQ(machine.access.prompts, 0);
}

TEST_F(AccessibilityRetryControllerTest, TheGrantIsCheckedEveryTwoSeconds) {
  retry.start();
  notesWithin(10min + 1ms);
  machine.access.trusted = true;
  EXPECT_THAT(notesWithin(2s - 1ms - 1us), IsEmpty());
  EXPECT_FALSE(hotkeys.isEventTapActive());
  notesWithin(1us);
  EXPECT_TRUE(hotkeys.isEventTapActive());
  EXPECT_TRUE(machine.taps.isEnabled());
}

TEST_F(AccessibilityRetryControllerTest,
       OnceTheTapRunsTheMenuIsRefreshedALineIsLoggedAndTheTimerEnds) {
  retry.start();
  machine.access.trusted = true;
  const auto notes = notesWithin(2s);
  ASSERT_GE(notes.size(), 2u);
  EXPECT_EQ(notes[notes.size() - 2], "[2000] refresh");
  EXPECT_EQ(notes.back(),
            "[2000] log Brivane: Accessibility granted — brightness keys now active.");
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(notesWithin(1min), IsEmpty());
}

TEST_F(AccessibilityRetryControllerTest, ATapRefusedInSpiteOfTheGrantIsTriedAgain) {
  retry.start();
  machine.access.trusted = machine.taps.refuses = true;
  EXPECT_THAT(notesWithin(4s), ElementsAre("[2000] create tap", "[4000] create tap"));
  machine.taps.refuses = false;
  EXPECT_THAT(notesWithin(2s), Contains(HasSubstr("Accessibility granted")));
}

TEST_F(AccessibilityRetryControllerTest,
       TheGrantGivesF1AndF2BackAndRegistersTheBindingsAndTheRelayAgain) {
  hotkeys.setRelayHotkeysEnabled(true);
  ASSERT_TRUE(machine.hotkeyGrabs.holds(f1, 0));
  ASSERT_TRUE(machine.hotkeyGrabs.holds(f2, 0));
  machine.notes.take();
  retry.start();
  machine.access.trusted = true;
  const auto notes = notesWithin(2s);
  EXPECT_FALSE(machine.hotkeyGrabs.holds(f1, 0));
  EXPECT_FALSE(machine.hotkeyGrabs.holds(f2, 0));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(upArrow, controlAndOption));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(f19, 0));
  EXPECT_THAT(notes, Contains(HasSubstr("register hotkey 1 ")));
  EXPECT_THAT(notes, Contains(HasSubstr("register hotkey 5 ")));
}

TEST_F(AccessibilityRetryControllerTest, F1AndF2StayWhenTheSettingsKeepThem) {
  machine.settings.values["KeepFunctionKeyFallback"] = {true};
  retry.start();
  machine.access.trusted = true;
  notesWithin(2s);
  EXPECT_TRUE(hotkeys.isEventTapActive());
  EXPECT_TRUE(machine.hotkeyGrabs.holds(f1, 0));
}

TEST_F(AccessibilityRetryControllerTest, AWithdrawnGrantEndsTheTapAndIsWaitedForAgain) {
  machine.access.trusted = true;
  hotkeys.startEventTap();
  machine.notes.take();
  retry.check();
  EXPECT_THAT(machine.notes.take(), IsEmpty()) << "it is granted";
  machine.access.trusted = false;
  retry.check();
  EXPECT_FALSE(machine.taps.exists());
  EXPECT_TRUE(machine.hotkeyGrabs.holds(f1, 0));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(f2, 0));
  const auto notes = machine.notes.take();
  EXPECT_THAT(notes, Contains("[0] refresh"));
  EXPECT_EQ(notes.back(),
            "[0] log Brivane: Accessibility withdrawn — brightness keys are back with the system.");
  retry.check();
  EXPECT_THAT(machine.notes.take(), IsEmpty()) << "there is no tap any more";
  machine.access.trusted = true;
  EXPECT_THAT(notesWithin(2s), Contains(HasSubstr("Accessibility granted")));
  EXPECT_TRUE(machine.taps.isEnabled());
  EXPECT_EQ(machine.access.prompts, 0);
}

TEST_F(AccessibilityRetryControllerTest, ALaterCheckIsATaskThatTheControllersEndDrops) {
  machine.access.trusted = true;
  hotkeys.startEventTap();
  machine.access.trusted = false;
  {
    AccessibilityRetryController other(machine, hotkeys, menu);
    other.checkLater();
  }
  machine.time.settle();
  EXPECT_TRUE(hotkeys.isEventTapActive());
  retry.checkLater();
  EXPECT_TRUE(hotkeys.isEventTapActive());
  machine.time.settle();
  EXPECT_FALSE(hotkeys.isEventTapActive());
}

TEST_F(AccessibilityRetryControllerTest, ASecondStartReplacesTheTimer) {
  retry.start();
  notesWithin(1s);
  retry.start();
  EXPECT_EQ(machine.time.timerCount(), 1u);
  machine.access.trusted = true;
  EXPECT_THAT(notesWithin(2s - 1us), IsEmpty());
  EXPECT_THAT(notesWithin(1us), Not(IsEmpty()));
}

TEST_F(AccessibilityRetryControllerTest, StoppingEndsThePolling) {
  retry.start();
  retry.stop();
  machine.access.trusted = true;
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(notesWithin(1min), IsEmpty());
}

TEST_F(AccessibilityRetryControllerTest, DestructionCancelsTheTimer) {
  {
    AccessibilityRetryController other(machine, hotkeys, menu);
    other.start();
    EXPECT_EQ(machine.time.timerCount(), 1u);
  }
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
