#pragma once

#import <AppKit/NSAppearance.h>
#import <AppKit/NSEvent.h>
#import <AppKit/NSResponder.h>

@class NSApplication, NSMenu;

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
  NSApplicationActivationPolicyAccessory = 1,
};

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (void)applicationWillTerminate:(NSNotification*)notification;
/// Whether AppKit is to go on by itself, as it does by bringing a window back.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application
                    hasVisibleWindows:(BOOL)hasVisibleWindows;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application;
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(readonly, strong) NSAppearance* effectiveAppearance;
/// Its items' submenus are what the menu bar shows.
@property(nullable, strong) NSMenu* mainMenu;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activateIgnoringOtherApps:(BOOL)ignoring;
/// Hides its windows; the application before becomes active.
- (void)hide:(nullable id)sender;
- (void)unhideWithoutActivation;
- (void)run;
/// The run ends once an event has been handled.
- (void)stop:(nullable id)sender;
/// Tells the delegate, then ends the process.
- (void)terminate:(nullable id)sender;
- (void)postEvent:(NSEvent*)event atStart:(BOOL)isFirst;
@end

BRIVANE_EXPORT const NSNotificationName NSApplicationDidChangeScreenParametersNotification;
BRIVANE_EXPORT void NSBeep(void);

#pragma clang assume_nonnull end
