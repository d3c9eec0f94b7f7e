#include "Tests/Mac/Machine/AppKit/AppKitBench.h"

#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/ObjC/Objects.h"

namespace brivane {
namespace {

/// What the system has one of, made when it is first asked for.
void makeSharedObjects() {
  @autoreleasepool {
    (void)NSApplication.sharedApplication;
    (void)NSWorkspace.sharedWorkspace.notificationCenter;
    (void)NSNotificationCenter.defaultCenter;
    (void)NSOperationQueue.mainQueue;
    (void)NSProcessInfo.processInfo;
    (void)NSRunLoop.mainRunLoop;
    (void)NSStatusBar.systemStatusBar;
    (void)NSColorSpace.sRGBColorSpace;
  }
}

}  // namespace

NothingIsLeft::NothingIsLeft() {
  FakeDesktop::shared().reset();
  makeSharedObjects();
  FakeDesktop::shared().start.clear();
  before = objc::liveObjects();
}

NothingIsLeft::~NothingIsLeft() {
  @autoreleasepool {
    EXPECT_EQ(FakeDesktop::shared().statusItems.count, 0U) << "status items";
    EXPECT_EQ(keyValueObserverCount(), 0) << "observers of properties";
    EXPECT_EQ(observerCount(NSNotificationCenter.defaultCenter), 0);
    EXPECT_EQ(observerCount(NSWorkspace.sharedWorkspace.notificationCenter), 0);
    EXPECT_EQ(NSApplication.sharedApplication.delegate, nil);
    EXPECT_EQ(NSApplication.sharedApplication.mainMenu, nil);
  }
  FakeDesktop::shared().reset();
  EXPECT_EQ(objc::liveObjects(), before) << "objects";
}

AppKitBench::AppKitBench() {
  desktop.loop.run = [this] { runtime.run(); };
  desktop.loop.stop = [this] { runtime.stop(); };
  desktop.loop.async = [this](Task task) { runtime.async(std::move(task)); };
  desktop.loop.after = [this](double seconds, Task task) {
    runtime.after(fromSeconds(seconds), std::move(task));
  };
  frame = std::make_unique<MacFrame>(runtime);
}

}  // namespace brivane
