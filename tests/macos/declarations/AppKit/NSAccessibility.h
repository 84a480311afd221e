#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityNotificationUserInfoKey;
typedef NSString* NSAccessibilityRole;

FOUNDATION_EXPORT NSAccessibilityRole const NSAccessibilityGroupRole;

FOUNDATION_EXPORT
NSAccessibilityNotificationName const NSAccessibilityAnnouncementRequestedNotification;
// The values are an NSString and an NSNumber that holds one of the priority levels.
FOUNDATION_EXPORT NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey;
FOUNDATION_EXPORT NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) {
  NSAccessibilityPriorityLow = 10,
  NSAccessibilityPriorityMedium = 50,
  NSAccessibilityPriorityHigh = 90,
};

FOUNDATION_EXPORT void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo);

NS_ASSUME_NONNULL_END
