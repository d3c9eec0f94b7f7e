#include <gmock/gmock.h>

#include "Machines/Mac/Frame/Application.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MacApplicationTest : public AppKitTest, public ApplicationDelegate {
 protected:
  MacApplicationTest() { application.setDelegate(this); }

  void applicationDidFinishLaunching() override { notes.emplace_back("launched"); }
  void applicationWasOpenedAgain() override { notes.emplace_back("opened again"); }
  void applicationWillTerminate() override { notes.emplace_back("will end"); }

  MacApplication& application = frame.application();
  std::vector<std::string> notes;
};

TEST_F(MacApplicationTest, ItHasNoDockIconAsAnAccessory) {
  application.setActivationPolicy(ActivationPolicy::accessory);
  application.setActivationPolicy(ActivationPolicy::regular);
  EXPECT_THAT(desktop.notes, ElementsAre("policy 1", "policy 0"));
}

TEST_F(MacApplicationTest, ItComesToTheFrontWhateverIsThere) {
  application.activateIgnoringOtherApplications();
  EXPECT_THAT(desktop.notes, ElementsAre("activate, whatever is in front"));
}

TEST_F(MacApplicationTest, ItBeeps) {
  application.beep();
  EXPECT_THAT(desktop.notes, ElementsAre("beep"));
}

TEST_F(MacApplicationTest, ItIsNotPutToDozeWhileItRunsThoughTheMachineMaySleep) {
  EXPECT_THAT(activities(), IsEmpty());
  bench.runtime.async([this] {
    constexpr std::uint64_t keepsTheMachineAwake = 1ULL << 20;
    constexpr std::uint64_t keepsScreensOn = 1ULL << 40;
    constexpr std::uint64_t isForTheUser = 0xFFFFFF;
    EXPECT_THAT(activities(), ElementsAre(isForTheUser & ~keepsTheMachineAwake & ~keepsScreensOn));
    application.exit(0);
  });
  application.run();
  EXPECT_THAT(activities(), IsEmpty());
}

TEST_F(MacApplicationTest, TheDelegateHearsWhenTheUserLogsOut) {
  [NSApplication.sharedApplication terminate:nil];
  EXPECT_THAT(notes, ElementsAre("will end"));
}

TEST_F(MacApplicationTest, ALogoutAfterExitIsNotReported) {
  application.exit(3);
  [NSApplication.sharedApplication terminate:nil];
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacApplicationTest, AppKitIsToldThatThereIsNoUnsafeStateToRestore) {
  NSApplication* const system = NSApplication.sharedApplication;
  EXPECT_TRUE([system.delegate applicationSupportsSecureRestorableState:system]);
}

TEST_F(MacApplicationTest, OpenedAgainItTellsTheDelegateAndBringsNoWindowBack) {
  NSApplication* const system = NSApplication.sharedApplication;
  EXPECT_FALSE([system.delegate applicationShouldHandleReopen:system hasVisibleWindows:NO]);
  EXPECT_FALSE([system.delegate applicationShouldHandleReopen:system hasVisibleWindows:YES]);
  EXPECT_THAT(notes, ElementsAre("opened again", "opened again"));
}

TEST_F(MacApplicationTest, OpeningAgainIsIgnoredDuringTheEnd) {
  NSApplication* const system = NSApplication.sharedApplication;
  application.exit(0);
  EXPECT_FALSE([system.delegate applicationShouldHandleReopen:system hasVisibleWindows:NO]);
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacApplicationTest, AnnouncementsOfTheSameAppearanceAreNoChange) {
  int changes = 0;
  const auto observation = application.observeEffectiveAppearance([&] { ++changes; });
  desktop.setDark(false);
  EXPECT_EQ(changes, 0);
  desktop.setDark(true);
  EXPECT_EQ(changes, 1);
}

TEST_F(MacApplicationTest, TheAppearanceThatItIsLaunchedInIsNoChange) {
  int changes = 0;
  const auto observation = application.observeEffectiveAppearance([&] { ++changes; });
  desktop.isDark = true;
  bench.runtime.after(fromSeconds(0.1), [&] {
    desktop.setDark(true);
    EXPECT_EQ(changes, 0);
    desktop.setDark(false);
    EXPECT_EQ(changes, 1);
    application.exit(0);
  });
  application.run();
}

TEST_F(MacApplicationTest, OtherKeyValueObservationsGoToTheSuperclass) {
  NSObject* const delegate = static_cast<NSObject*>(NSApplication.sharedApplication.delegate);
  EXPECT_DEATH([delegate observeValueForKeyPath:@"other" ofObject:nil change:nil context:nil],
               "nobody has asked to be told of other");
}

TEST_F(MacApplicationTest, AppKitsCallsAfterItsEndAreIgnored) {
  const id<NSApplicationDelegate> delegate = NSApplication.sharedApplication.delegate;
  bench.frame.reset();
  [delegate applicationDidFinishLaunching:[NSNotification new]];
  [delegate applicationShouldHandleReopen:NSApplication.sharedApplication hasVisibleWindows:NO];
  [delegate applicationWillTerminate:[NSNotification new]];
  EXPECT_THAT(notes, IsEmpty());
}

}  // namespace
}  // namespace brivane
