#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
/// The workspace's own: its announcements come through no other.
@property(readonly, strong) NSNotificationCenter* notificationCenter;
- (BOOL)openURL:(NSURL*)url;
@end

BRIVANE_EXPORT const NSNotificationName NSWorkspaceDidWakeNotification;
BRIVANE_EXPORT const NSNotificationName NSWorkspaceScreensDidWakeNotification;

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:
    (NSString*)bundleIdentifier;
@property(readonly) int processIdentifier;
@end

#pragma clang assume_nonnull end
