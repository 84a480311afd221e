#pragma once

#import <UserNotifications/UNNotificationContent.h>
#import <UserNotifications/UNNotificationSettings.h>

NS_ASSUME_NONNULL_BEGIN

@class UNUserNotificationCenter;

typedef NS_OPTIONS(NSUInteger, UNAuthorizationOptions) {
  UNAuthorizationOptionSound = 1 << 1,
  UNAuthorizationOptionAlert = 1 << 2,
};

// Banner and list replace alert, which is deprecated.
typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionSound = 1 << 1,
  UNNotificationPresentationOptionBanner = 1 << 4,
};

// The documentation does not say on which thread these are called.
@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))handler;
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))handler;
@end

@interface UNUserNotificationCenter : NSObject
@property(nullable, weak) id<UNUserNotificationCenterDelegate> delegate;
// A method, not a property. Raises an exception outside a bundled application.
+ (UNUserNotificationCenter*)currentNotificationCenter;
// The completion handlers may run on any thread. See Apple developer documentation,
// UNUserNotificationCenter.
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))handler;
- (void)getNotificationSettingsWithCompletionHandler:
    (void (^)(UNNotificationSettings* settings))handler;
// A request replaces an earlier one with the same identifier.
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))handler;
@end

NS_ASSUME_NONNULL_END
