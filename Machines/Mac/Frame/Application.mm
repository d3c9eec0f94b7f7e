// AppKit's own way to end, `terminate:`, tells the delegate and ends the process within the call.
// What ends by `exit` leaves the run loop instead, so that everything comes down in its order; the
// loop notices that it was stopped only at the next event, so one is posted. A menu that is open or
// a control that the mouse holds runs a loop within, which would take that event for itself and
// drop it: it is posted only when the outermost loop runs again.
#include "Machines/Mac/Frame/Application.h"

#include <utility>

/// What AppKit tells of the application. It may outlive the application, which takes itself out.
@interface BrivaneApplicationDelegate : NSObject <NSApplicationDelegate> {
 @public
  brivane::MacApplication* application;
}
@end

namespace {

NSString* const appearanceKey = @"effectiveAppearance";
/// Tells this observation from others of the same object.
char appearanceContext;

}  // namespace

@implementation BrivaneApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (application != nullptr) application->didFinishLaunching();
}

/// There is no window that AppKit could bring back.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)itsApplication
                    hasVisibleWindows:(BOOL)hasVisibleWindows {
  if (application != nullptr) application->wasOpenedAgain();
  return NO;
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  if (application != nullptr) application->willTerminate();
}

/// There is no state to restore; without an answer AppKit warns at each start.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)itsApplication {
  return YES;
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
  if (context != &appearanceContext) {
    [super observeValueForKeyPath:keyPath ofObject:object change:change context:context];
  } else if (application != nullptr) {
    application->appearanceMayHaveChanged();
  }
}

@end

namespace brivane {
namespace {

Appearance currentAppearance() {
  NSAppearanceName const best = [NSApplication.sharedApplication.effectiveAppearance
      bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
  return [best isEqualToString:NSAppearanceNameDarkAqua] ? Appearance::dark : Appearance::light;
}

NSEvent* emptyEvent() {
  return [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                            location:NSMakePoint(0, 0)
                       modifierFlags:0
                           timestamp:0
                        windowNumber:0
                             context:nil
                             subtype:0
                               data1:0
                               data2:0];
}

}  // namespace

MacApplication::MacApplication(Runtime& frameRuntime)
    : runtime(frameRuntime),
      systemDelegate([[BrivaneApplicationDelegate alloc] init]),
      shownAppearance(currentAppearance()) {
  systemDelegate->application = this;
  NSApplication* const application = NSApplication.sharedApplication;
  application.delegate = systemDelegate;
  [application addObserver:systemDelegate
                forKeyPath:appearanceKey
                   options:NSKeyValueObservingOptionNew
                   context:&appearanceContext];
}

MacApplication::~MacApplication() {
  systemDelegate->application = nullptr;
  NSApplication* const application = NSApplication.sharedApplication;
  [application removeObserver:systemDelegate forKeyPath:appearanceKey context:&appearanceContext];
  application.delegate = nil;
}

void MacApplication::setActivationPolicy(ActivationPolicy policy) {
  [NSApplication.sharedApplication
      setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

/// The system lets programs that show no window doze, and their timers with them; this one has to
/// answer keys and keep its times all the same. The machine may sleep as ever.
int MacApplication::run() {
  NSProcessInfo* const process = NSProcessInfo.processInfo;
  const id<NSObject> activity =
      [process beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                 reason:@"Brightness keys"];
  [NSApplication.sharedApplication run];
  [process endActivity:activity];
  return exitStatus;
}

void MacApplication::terminate() {
  if (isEnding) return;
  [NSApplication.sharedApplication terminate:nil];
}

void MacApplication::exit(int status) {
  isEnding = true;
  exitStatus = status;
  endings.announce();
  runtime.stop();
  NSApplication* const application = NSApplication.sharedApplication;
  [application stop:nil];
  [NSRunLoop.mainRunLoop performBlock:^{
    [application postEvent:emptyEvent() atStart:YES];
  }];
}

void MacApplication::activateIgnoringOtherApplications() {
  [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
}

void MacApplication::beep() {
  NSBeep();
}

Appearance MacApplication::effectiveAppearance() {
  return currentAppearance();
}

Observation MacApplication::observeEffectiveAppearance(Task handler) {
  return appearanceChanges.observe(std::move(handler));
}

Observation MacApplication::observeEnd(Task handler) {
  return endings.observe(std::move(handler));
}

/// The system's appearance is the application's only by now.
void MacApplication::didFinishLaunching() {
  shownAppearance = currentAppearance();
  if (delegate != nullptr) delegate->applicationDidFinishLaunching();
}

void MacApplication::wasOpenedAgain() {
  if (delegate != nullptr && !isEnding) delegate->applicationWasOpenedAgain();
}

/// From `terminate`, or because the user logs out.
void MacApplication::willTerminate() {
  if (std::exchange(isEnding, true)) return;
  if (delegate != nullptr) delegate->applicationWillTerminate();
}

/// AppKit tells of every new appearance object, of another accent colour too.
void MacApplication::appearanceMayHaveChanged() {
  const Appearance now = currentAppearance();
  if (std::exchange(shownAppearance, now) != now) appearanceChanges.announce();
}

}  // namespace brivane
