// Some calls need an autorelease pool of their own: those by commands, and before the application
// runs.
#include "Machines/Mac/SystemAppKit.h"

#import <AppKit/AppKit.h>

#include "Machines/Mac/Frame/AppKitValues.h"

namespace brivane {
namespace {

std::optional<DisplayID> numberOf(NSScreen* screen) {
  const id number = screen.deviceDescription[@"NSScreenNumber"];
  if (![number isKindOfClass:[NSNumber class]]) return std::nullopt;
  return static_cast<NSNumber*>(number).unsignedIntValue;
}

Screen screenOf(NSScreen* screen) {
  return {numberOf(screen), rectOf(screen.frame), utf8Text(screen.localizedName),
          screen.maximumPotentialExtendedDynamicRangeColorComponentValue};
}

/// Observes a notification centre until destroyed.
class CenterObserver {
 public:
  CenterObserver(NSNotificationCenter* observedCenter, NSNotificationName name, const Task& handler)
      : center(observedCenter),
        observer([center addObserverForName:name
                                     object:nil
                                      queue:NSOperationQueue.mainQueue
                                 usingBlock:blockOf(handler)]) {}
  ~CenterObserver() { [center removeObserver:observer]; }
  CenterObserver(const CenterObserver&) = delete;
  CenterObserver& operator=(const CenterObserver&) = delete;

 private:
  /// By value: a block copies the values that it captures, but not what references refer to.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  static void (^blockOf(Task handler))(NSNotification*) {
    return ^(NSNotification*) {
      handler();
    };
  }

  NSNotificationCenter* const center;
  const id observer;
};

Observation observe(NSNotificationCenter* center, NSNotificationName name, const Task& handler) {
  @autoreleasepool {
    return std::make_shared<CenterObserver>(center, name, handler);
  }
}

}  // namespace

std::vector<Screen> SystemAppKit::screens() {
  @autoreleasepool {
    std::vector<Screen> result;
    for (NSScreen* screen in NSScreen.screens) result.push_back(screenOf(screen));
    return result;
  }
}

std::optional<Screen> SystemAppKit::mainScreen() {
  @autoreleasepool {
    NSScreen* const screen = NSScreen.mainScreen;
    if (screen == nil) return std::nullopt;
    return screenOf(screen);
  }
}

Point SystemAppKit::pointerPosition() {
  const NSPoint location = NSEvent.mouseLocation;
  return {location.x, location.y};
}

std::uint64_t SystemAppKit::modifierFlags() {
  return NSEvent.modifierFlags;
}

std::optional<TapEvent::SystemDefined> SystemAppKit::systemDefined(CGEventRef event) {
  @autoreleasepool {
    NSEvent* const converted = [NSEvent eventWithCGEvent:event];
    // AppKit raises an exception when these fields of other events are read.
    if (converted == nil || converted.type != NSEventTypeSystemDefined) return std::nullopt;
    return TapEvent::SystemDefined{converted.subtype, converted.data1, converted.data2};
  }
}

std::vector<ProcessID> SystemAppKit::runningApplications(const std::string& bundleIdentifier) {
  @autoreleasepool {
    std::vector<ProcessID> result;
    NSArray<NSRunningApplication*>* const applications =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:nsString(bundleIdentifier)];
    for (NSRunningApplication* application in applications) {
      result.push_back(application.processIdentifier);
    }
    return result;
  }
}

void SystemAppKit::becomeApplication() {
  @autoreleasepool {
    (void)NSApplication.sharedApplication;
  }
}

void SystemAppKit::openURL(const std::string& url) {
  @autoreleasepool {
    NSURL* const address = [NSURL URLWithString:nsString(url)];
    if (address != nil) [NSWorkspace.sharedWorkspace openURL:address];
  }
}

Observation SystemAppKit::observeScreenParameters(Task handler) {
  return observe(NSNotificationCenter.defaultCenter,
                 NSApplicationDidChangeScreenParametersNotification, handler);
}

/// The workspace has a notification centre of its own.
Observation SystemAppKit::observeDidWake(Task handler) {
  return observe(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidWakeNotification,
                 handler);
}

Observation SystemAppKit::observeScreensDidWake(Task handler) {
  return observe(NSWorkspace.sharedWorkspace.notificationCenter,
                 NSWorkspaceScreensDidWakeNotification, handler);
}

}  // namespace brivane
