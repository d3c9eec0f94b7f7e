#include <gmock/gmock.h>

#include "Machines/Mac/SystemAppKit.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SystemAppKitTest : public testing::Test {
 protected:
  FakeDesktop& desktop = FakeDesktop::shared();
  const NothingIsLeft check;
  const TestPool pool;
  SystemAppKit appKit;
};

TEST_F(SystemAppKitTest, ScreensComeInTheSystemsOrderWithAllThatIsKnownOfThem) {
  EXPECT_THAT(appKit.screens(), IsEmpty());
  [desktop.screens addObject:makeFakeScreen([NSNumber numberWithUnsignedInt : 4'294'967'295U],
                                            { 0, 0, 1512, 982 }, "Built-in", 16)];
  [desktop.screens addObject:makeFakeScreen([NSNumber numberWithUnsignedInt : 2],
                                            { -2560, 100.5, 2560, 1440 }, "Halden 27", 1)];
  const auto screens = appKit.screens();
  ASSERT_EQ(screens.size(), 2U);
  EXPECT_EQ(screens[0].number, 4'294'967'295U);
  EXPECT_EQ(screens[0].potentialHeadroom, 16);
  EXPECT_EQ(screens[1].number, 2U);
  EXPECT_EQ(screens[1].frame, (Rect{-2560, 100.5, 2560, 1440}));
  EXPECT_EQ(screens[1].localizedName, "Halden 27");
  EXPECT_EQ(screens[1].potentialHeadroom, 1);
}

/// Commands look for the screens and run no application, whose loop has a pool for each turn.
TEST(SystemAppKitWithoutAnApplication, ScreensAreReadWhereNoPoolIs) {
  const NothingIsLeft check;
  @autoreleasepool {
    NSMutableArray<NSScreen*>* const screens = FakeDesktop::shared().screens;
    [screens addObject:makeFakeScreen([NSNumber numberWithUnsignedInt : 2], {}, "a", 1)];
  }
  EXPECT_EQ(SystemAppKit().screens().size(), 1U);
}

TEST_F(SystemAppKitTest, AScreenWithoutANumericNumberHasNone) {
  [desktop.screens addObject:makeFakeScreen(nil, {}, "a", 1)];
  [desktop.screens addObject:makeFakeScreen(@"7", {}, "b", 1)];
  EXPECT_EQ(appKit.screens().at(0).number, std::nullopt);
  EXPECT_EQ(appKit.screens().at(1).number, std::nullopt);
}

TEST_F(SystemAppKitTest, TheMainScreenIsTheOneWithTheKeys) {
  EXPECT_FALSE(appKit.mainScreen().has_value());
  desktop.mainScreen = makeFakeScreen([NSNumber numberWithUnsignedInt : 5], { 1, 2, 3, 4 }, "m", 2);
  EXPECT_EQ(appKit.mainScreen()->number, 5U);
}

TEST_F(SystemAppKitTest, ThePointerCountsUpwards) {
  desktop.pointer = NSMakePoint(100.5, 900);
  EXPECT_EQ(appKit.pointerPosition(), (Point{100.5, 900}));
}

TEST_F(SystemAppKitTest, ModifiersAreThoseThatAreDownNow) {
  desktop.modifiers = NSEventModifierFlagControl | NSEventModifierFlagOption;
  EXPECT_EQ(appKit.modifierFlags(), 0xC0000U);
}

TEST_F(SystemAppKitTest, ASystemDefinedEventTellsWhatItCarries) {
  desktop.contentOfEvent = [](CGEventRef) {
    return FakeEventContent{NSEventTypeSystemDefined, 8, 0x20A00, -1};
  };
  const auto details = appKit.systemDefined(nullptr);
  ASSERT_TRUE(details.has_value());
  EXPECT_EQ(details->subtype, 8);
  EXPECT_EQ(details->data1, 0x20A00);
  EXPECT_EQ(details->data2, -1);
}

TEST_F(SystemAppKitTest, OtherEventsCarryNothing) {
  desktop.contentOfEvent = [](CGEventRef) { return FakeEventContent{NSEventTypeKeyDown}; };
  EXPECT_FALSE(appKit.systemDefined(nullptr).has_value());
  desktop.contentOfEvent = [](CGEventRef) { return std::nullopt; };
  EXPECT_FALSE(appKit.systemDefined(nullptr).has_value());
}

TEST_F(SystemAppKitTest, RunningApplicationsAreFoundByTheirBundle) {
  [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", 41)];
  [desktop.runningApplications addObject:makeFakeApplication("com.example.other", 42)];
  [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", 43)];
  EXPECT_THAT(appKit.runningApplications("com.quorrel.brivane"), ElementsAre(41, 43));
  EXPECT_THAT(appKit.runningApplications("com.quorrel"), IsEmpty());
}

TEST_F(SystemAppKitTest, URLsAreOpenedByWhateverIsForThem) {
  appKit.openURL("x-apple.systempreferences:com.apple.preference.security");
  appKit.openURL("no url");
  EXPECT_THAT(desktop.notes,
              ElementsAre("open x-apple.systempreferences:com.apple.preference.security"));
}

TEST_F(SystemAppKitTest, ChangesOfScreensAreHeardFromTheApplication) {
  int heard = 0;
  auto observation = appKit.observeScreenParameters([&] { ++heard; });
  const NSNotificationName name = NSApplicationDidChangeScreenParametersNotification;
  announce(NSNotificationCenter.defaultCenter, name, NSApplication.sharedApplication);
  EXPECT_EQ(heard, 1);
  observation.reset();
  announce(NSNotificationCenter.defaultCenter, name, NSApplication.sharedApplication);
  EXPECT_EQ(heard, 1);
}

TEST_F(SystemAppKitTest, WakingIsHeardFromTheWorkspaceAlone) {
  int wakes = 0;
  int screenWakes = 0;
  const auto machine = appKit.observeDidWake([&] { ++wakes; });
  const auto screens = appKit.observeScreensDidWake([&] { ++screenWakes; });
  NSNotificationCenter* const center = NSWorkspace.sharedWorkspace.notificationCenter;
  EXPECT_EQ(announce(NSNotificationCenter.defaultCenter, NSWorkspaceDidWakeNotification,
                     NSWorkspace.sharedWorkspace),
            0);
  announce(center, NSWorkspaceDidWakeNotification, NSWorkspace.sharedWorkspace);
  EXPECT_EQ(wakes, 1);
  EXPECT_EQ(screenWakes, 0);
  announce(center, NSWorkspaceScreensDidWakeNotification, NSWorkspace.sharedWorkspace);
  EXPECT_EQ(wakes, 1);
  EXPECT_EQ(screenWakes, 1);
}

TEST_F(SystemAppKitTest, AnnouncementsArriveOnTheMainQueue) {
  const auto screenParameters = appKit.observeScreenParameters([] {});
  const auto machine = appKit.observeDidWake([] {});
  const auto screens = appKit.observeScreensDidWake([] {});
  NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
  EXPECT_EQ(observerCount(NSNotificationCenter.defaultCenter), 1);
  EXPECT_TRUE(allHearOnTheMainQueue(NSNotificationCenter.defaultCenter));
  EXPECT_EQ(observerCount(workspace), 2);
  EXPECT_TRUE(allHearOnTheMainQueue(workspace));
}

TEST_F(SystemAppKitTest, AnObserverMayRemoveItselfInItsHandler) {
  Observation observation;
  int heard = 0;
  observation = appKit.observeDidWake([&] {
    ++heard;
    observation.reset();
  });
  NSNotificationCenter* const center = NSWorkspace.sharedWorkspace.notificationCenter;
  announce(center, NSWorkspaceDidWakeNotification, NSWorkspace.sharedWorkspace);
  announce(center, NSWorkspaceDidWakeNotification, NSWorkspace.sharedWorkspace);
  EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace brivane
