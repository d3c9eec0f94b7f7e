#include <gmock/gmock.h>
#include <unistd.h>

#include "Machines/Mac/Applications.h"
#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"
#include "Tests/Support/OtherInstance.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MacWholeProgram, IsAnApplicationWithADelegateBeforeItRuns) {
  thenEnd(0.3);
  EXPECT_EQ(run(), 0);
  EXPECT_THAT(desktop.start, ElementsAre("shared application", "delegate", "run"));
}

TEST_F(MacWholeProgram, ASecondStartNamesTheFirstAndTouchesNoApplication) {
  for (const int process : {static_cast<int>(getpid()), 4711}) {
    [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", process)];
  }
  testing::internal::CaptureStderr();
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Brivane is already running (pid 4711); exiting.\n");
  EXPECT_THAT(desktop.start, IsEmpty());
  EXPECT_THAT(desktop.notes, IsEmpty());
}

TEST_F(MacWholeProgram, OfTwoStartsAtOnceTheSecondNamesTheFirst) {
  FakeAppKitServices itsAppKit;
  const OtherInstance<MacApplications> first(itsAppKit);
  ASSERT_TRUE(first.isAnnounced);
  desktop.loop.run = [] { [NSApplication.sharedApplication terminate:nil]; };
  testing::internal::CaptureStderr();
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Brivane is already running (pid " + std::to_string(first.process) + "); exiting.\n");
  EXPECT_THAT(desktop.start, IsEmpty());
}

TEST_F(MacWholeProgram, ABareExecutableStartsBesideAnother) {
  fake::system().bundleIdentifier = std::nullopt;
  [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", 4711)];
  waitUntil([this] { return desktop.statusItems.count == 1; });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, CommandsMakeNoApplication) {
  testing::internal::CaptureStdout();
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--unmap"}, {"--probe"}, {"--set", "40"}}) {
    EXPECT_EQ(run(words), 0);
  }
  EXPECT_NE(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(levelShownOnRight(), 20);
  EXPECT_THAT(desktop.start, IsEmpty());
  EXPECT_THAT(desktop.notes, IsEmpty());
}

TEST_F(MacWholeProgram, EndsFromItsMenu) {
  bool isTold = false;
  waitUntil([this] { return hasSlider("Right") && mappedKeys() != 0; });
  then(0, [this] {
    EXPECT_TRUE(hasItsHotkey());
    dragRightTo(-40);
  });
  waitUntil([] { return whiteOfRight() < 1; });
  then(0, [] {
    // Its mark may be hidden.
    NSApplication* const system = NSApplication.sharedApplication;
    [system.delegate applicationShouldHandleReopen:system hasVisibleWindows:NO];
  });
  // AppKit asks for it once it has told the delegate. There a real process is over, and nothing
  // that comes down later is of use.
  desktop.loop.stop = [this, &isTold] {
    isTold = true;
    EXPECT_EQ(whiteOfRight(), 1);
    EXPECT_EQ(mappedKeys(), 0);
    EXPECT_FALSE(hasItsHotkey());
    CFRunLoopStop(CFRunLoopGetMain());
  };
  waitUntil([this] { return desktop.openMenu != nil; });
  then(0, [this] { desktop.choose("Quit Brivane"); });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isTold);
  EXPECT_EQ(desktop.statusItems.count, 0U);
}

}  // namespace
}  // namespace brivane
