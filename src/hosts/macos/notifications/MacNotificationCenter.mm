#include "hosts/macos/notifications/MacNotificationCenter.h"

#include <utility>

#include "hosts/macos/system/Conversions.h"

namespace {

NSString* const urlKey = @"url";

// Returns nullopt for a notification without an address, as another version may have posted it.
std::optional<std::string> urlOf(UNNotificationResponse* response) {
  const id url = response.notification.request.content.userInfo[urlKey];
  if (![url isKindOfClass:[NSString class]]) return std::nullopt;
  return navora::toString(static_cast<NSString*>(url));
}

UNNotificationPresentationOptions toPresentationOptions(navora::PresentationOptions options) {
  UNNotificationPresentationOptions result = 0;
  if (options.banner) result |= UNNotificationPresentationOptionBanner;
  if (options.sound) result |= UNNotificationPresentationOptionSound;
  return result;
}

}  // namespace

// The system may call it on any thread. `delegate` is accessed on the main thread only and may be
// set to null there at any time.
@interface NavoraNotificationForwarder : NSObject <UNUserNotificationCenterDelegate>
@property(nonatomic, nullable) navora::NotificationCenterDelegate* delegate;
@end

@implementation NavoraNotificationForwarder

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
  NavoraNotificationForwarder* __weak weakSelf = self;
  dispatch_async(dispatch_get_main_queue(), ^{
    navora::NotificationCenterDelegate* delegate = weakSelf.delegate;
    completionHandler(toPresentationOptions(
        delegate == nullptr ? navora::PresentationOptions{} : delegate->willPresentNotification()));
  });
}

// Calls the completion handler without waiting for the delegate, because the system waits for it
// and opening the page may take long.
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
  NavoraNotificationForwarder* __weak weakSelf = self;
  const std::optional<std::string> url = urlOf(response);
  dispatch_async(dispatch_get_main_queue(), ^{
    navora::NotificationCenterDelegate* delegate = weakSelf.delegate;
    if (delegate != nullptr) delegate->didReceiveNotification(url);
  });
  completionHandler();
}

@end

namespace navora {

namespace {

// Returns a function for the system to call once, on any thread. It calls `completion` on the main
// thread and destroys it there; the system's thread destroys at most an empty function.
template <typename Value>
std::function<void(Value)> onMainThread(std::function<void(Value)> completion) {
  const auto shell = std::make_shared<std::function<void(Value)>>(std::move(completion));
  // `value` is passed by value because a block captures a reference as a reference.
  return [shell](Value value) {
    dispatch_async(dispatch_get_main_queue(), ^{
      std::exchange(*shell, nullptr)(value);
    });
  };
}

UNAuthorizationOptions toAuthorizationOptions(NotificationCenter::Options options) {
  UNAuthorizationOptions result = 0;
  if (options.alert) result |= UNAuthorizationOptionAlert;
  if (options.sound) result |= UNAuthorizationOptionSound;
  return result;
}

AuthorizationStatus toAuthorizationStatus(UNAuthorizationStatus status) {
  switch (status) {
    case UNAuthorizationStatusDenied:
      return AuthorizationStatus::denied;
    case UNAuthorizationStatusAuthorized:
      return AuthorizationStatus::authorized;
    case UNAuthorizationStatusProvisional:
      return AuthorizationStatus::provisional;
    default:
      return AuthorizationStatus::notDetermined;
  }
}

UNNotificationRequest* toRequest(const UserNotification& notification) {
  UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
  content.title = toNSString(notification.title);
  content.body = toNSString(notification.body);
  content.sound = notification.defaultSound ? UNNotificationSound.defaultSound : nil;
  content.userInfo = @{urlKey : toNSString(notification.url)};
  return [UNNotificationRequest requestWithIdentifier:toNSString(notification.identifier)
                                              content:content
                                              trigger:nil];
}

}  // namespace

MacNotificationCenter::MacNotificationCenter()
    : center_([UNUserNotificationCenter currentNotificationCenter]),
      forwarder_([[NavoraNotificationForwarder alloc] init]) {
  center_.delegate = forwarder_;
}

MacNotificationCenter::~MacNotificationCenter() {
  forwarder_.delegate = nullptr;
  center_.delegate = nil;
}

void MacNotificationCenter::setDelegate(NotificationCenterDelegate* _Nullable delegate) {
  forwarder_.delegate = delegate;
}

void MacNotificationCenter::requestAuthorization(
    Options options, std::function<void(AuthorizationResult)> completion) {
  const auto finish = onMainThread<AuthorizationResult>(lifetime_.guard(std::move(completion)));
  [center_ requestAuthorizationWithOptions:toAuthorizationOptions(options)
                         completionHandler:^(BOOL granted, NSError* _Nullable error) {
                           if (error != nil) {
                             finish(Unexpected(toPlatformError(error)));
                           } else {
                             finish(granted == YES);
                           }
                         }];
}

void MacNotificationCenter::authorizationStatus(
    std::function<void(AuthorizationStatus)> completion) {
  const auto finish = onMainThread<AuthorizationStatus>(lifetime_.guard(std::move(completion)));
  [center_ getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
    finish(toAuthorizationStatus(settings.authorizationStatus));
  }];
}

void MacNotificationCenter::add(const UserNotification& notification,
                                std::function<void(std::optional<PlatformError>)> completion) {
  const auto finish =
      onMainThread<std::optional<PlatformError>>(lifetime_.guard(std::move(completion)));
  [center_ addNotificationRequest:toRequest(notification)
            withCompletionHandler:^(NSError* _Nullable error) {
              finish(error == nil ? std::nullopt : std::optional(toPlatformError(error)));
            }];
}

}  // namespace navora
