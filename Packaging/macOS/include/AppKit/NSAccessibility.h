#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSAccessibilityRole;
BRIVANE_EXPORT const NSAccessibilityRole NSAccessibilityButtonRole;
BRIVANE_EXPORT const NSAccessibilityRole NSAccessibilityStaticTextRole;

typedef NSString* NSAccessibilityNotificationName;
/// To be posted for the application.
BRIVANE_EXPORT const NSAccessibilityNotificationName
    NSAccessibilityAnnouncementRequestedNotification;

typedef NSString* NSAccessibilityNotificationUserInfoKey;
/// An NSString, and an NSNumber that is an NSAccessibilityPriorityLevel.
BRIVANE_EXPORT const NSAccessibilityNotificationUserInfoKey NSAccessibilityAnnouncementKey;
BRIVANE_EXPORT const NSAccessibilityNotificationUserInfoKey NSAccessibilityPriorityKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) {
  NSAccessibilityPriorityLow = 10,
  NSAccessibilityPriorityMedium = 50,
  NSAccessibilityPriorityHigh = 90,
};

BRIVANE_EXPORT void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo);

#pragma clang assume_nonnull end
