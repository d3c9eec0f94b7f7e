// AppKit's own `terminate:` calls the delegate and ends the process within the call. `exit` leaves
// the run loop instead, so that all objects are destroyed in order. The loop notices the stop only
// at its next event, so one is posted. An open menu or a dragged control runs a nested loop, which
// would consume that event, so it is posted when the outermost loop runs again.
#include "Machines/Mac/Frame/Application.h"

#include <utility>

/// AppKit's delegate. It may outlive the application, whose destructor clears the pointer.
@interface BrivaneApplicationDelegate : NSObject <NSApplicationDelegate> {
 @public
  brivane::MacApplication* application;
}
@end

namespace {

NSString* const appearanceKey = @"effectiveAppearance";
/// Identifies this observation among others of the same object.
char appearanceContext;

}  // namespace

@implementation BrivaneApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (application != nullptr) application->didFinishLaunching();
}

/// NO: there is no window that AppKit could bring back.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender
                    hasVisibleWindows:(BOOL)hasVisibleWindows {
  if (application != nullptr) application->wasOpenedAgain();
  return NO;
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  if (application != nullptr) application->willTerminate();
}

/// There is no state to restore, but without this method AppKit warns at each start.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)sender {
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

/// Never shown, as the program is an accessory: for the keys of its items alone.
NSMenu* makeMainMenu() {
  NSMenu* const commands = [[NSMenu alloc] initWithTitle:@""];
  const auto add = [commands](SEL action, NSString* key) {
    [commands addItem:[[NSMenuItem alloc] initWithTitle:@"" action:action keyEquivalent:key]];
  };
  add(@selector(performClose:), @"w");
  add(@selector(terminate:), @"q");
  NSMenuItem* const top = [[NSMenuItem alloc] initWithTitle:@"" action:nil keyEquivalent:@""];
  top.submenu = commands;
  NSMenu* const mainMenu = [[NSMenu alloc] initWithTitle:@""];
  [mainMenu addItem:top];
  return mainMenu;
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
  application.mainMenu = makeMainMenu();
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
  application.mainMenu = nil;
}

void MacApplication::setActivationPolicy(ActivationPolicy policy) {
  [NSApplication.sharedApplication
      setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

/// An activity keeps App Nap from slowing a program without windows and its timers; the machine may
/// still sleep.
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
  NSApplication* const application = NSApplication.sharedApplication;
  // Closing the editor has hidden the application.
  [application unhideWithoutActivation];
  [application activateIgnoringOtherApps:YES];
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

/// Only now the application has the system's appearance.
void MacApplication::didFinishLaunching() {
  shownAppearance = currentAppearance();
  if (delegate != nullptr) delegate->applicationDidFinishLaunching();
}

void MacApplication::wasOpenedAgain() {
  if (delegate != nullptr && !isEnding) delegate->applicationWasOpenedAgain();
}

/// By `terminate`, or when the user logs out.
void MacApplication::willTerminate() {
  if (std::exchange(isEnding, true)) return;
  if (delegate != nullptr) delegate->applicationWillTerminate();
}

/// AppKit reports every new appearance object, for another accent colour, too.
void MacApplication::appearanceMayHaveChanged() {
  const Appearance now = currentAppearance();
  if (std::exchange(shownAppearance, now) != now) appearanceChanges.announce();
}

}  // namespace brivane
