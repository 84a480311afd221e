#include <algorithm>
#include <map>
#include <mutex>

#include "frameworks/Foundation/OnceHandler.h"
#include "frameworks/Foundation/Strings.h"
#include "frameworks/UserNotifications/NotificationState.h"
#include "runtime/Runtime.h"

using navora::doubles::NotificationState;
using navora::doubles::stringFromUtf8;
using navora::doubles::utf8Of;

NSErrorDomain const UNErrorDomain = @"UNErrorDomain";

@implementation UNNotificationSound

+ (UNNotificationSound*)defaultSound {
  static UNNotificationSound* const sound =
      navora::objc::forever([[UNNotificationSound alloc] init]);
  return sound;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation UNNotificationContent {
 @package
  NSString* _title;
  NSString* _body;
  UNNotificationSound* _sound;
  NSDictionary* _userInfo;
}

@synthesize title = _title, body = _body, sound = _sound, userInfo = _userInfo;

- (id)copyWithZone:(nullable NSZone*)zone {
  UNNotificationContent* copy = [[UNNotificationContent alloc] init];
  copy->_title = _title;
  copy->_body = _body;
  copy->_sound = _sound;
  copy->_userInfo = _userInfo;
  return copy;
}

@end

@implementation UNMutableNotificationContent

@dynamic title, body, sound, userInfo;

- (void)setTitle:(NSString*)title {
  _title = [title copy];
}

- (void)setBody:(NSString*)body {
  _body = [body copy];
}

- (void)setSound:(nullable UNNotificationSound*)sound {
  _sound = [sound copy];
}

- (void)setUserInfo:(NSDictionary*)userInfo {
  _userInfo = [userInfo copy];
}

@end

@implementation UNNotificationRequest

@synthesize identifier = _identifier, content = _content;

+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger {
  UNNotificationRequest* request = [[self alloc] init];
  request->_identifier = [identifier copy];
  request->_content = [content copy];
  return request;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation UNNotification

@synthesize request = _request;

+ (instancetype)notificationWithRequest:(UNNotificationRequest*)request {
  UNNotification* notification = [[self alloc] init];
  notification->_request = request;
  return notification;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation UNNotificationResponse

@synthesize notification = _notification;

+ (instancetype)responseWithNotification:(UNNotification*)notification {
  UNNotificationResponse* response = [[self alloc] init];
  response->_notification = notification;
  return response;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation UNNotificationSettings

@synthesize authorizationStatus = _authorizationStatus;

+ (instancetype)settingsWithStatus:(UNAuthorizationStatus)status {
  UNNotificationSettings* settings = [[self alloc] init];
  settings->_authorizationStatus = status;
  return settings;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

namespace {

// What the tests and the centre's thread share.
struct Centre {
  static Centre& shared() {
    static auto& centre = *[] {
      navora::objc::whenTestEnds([] {
        NotificationState::shared() = NotificationState();
        Centre::shared().requests.clear();
        Centre::shared().presentation.reset();
        Centre::shared().calledDelegate = nil;
      });
      auto* made = new Centre;
      made->queue = dispatch_queue_create("notifications", DISPATCH_QUEUE_SERIAL);
      navora::objc::keepForever(made->queue);
      return made;
    }();
    return centre;
  }

  std::mutex mutex;
  NotificationState state;
  std::map<std::string, UNNotificationRequest*> requests;
  std::optional<UNNotificationPresentationOptions> presentation;
  // The delegate that was called last: nothing says when the system's thread releases it.
  id calledDelegate = nil;
  // The completion handlers and the delegate are called on any thread: documentation of
  // UNUserNotificationCenter.
  dispatch_queue_t queue;
};

// Documentation of UNErrorCodeNotificationsNotAllowed.
NSError* notAllowed() {
  return [NSError
      errorWithDomain:UNErrorDomain
                 code:1
             userInfo:@{
               NSLocalizedDescriptionKey : @"Notifications are not allowed for this application"
             }];
}

bool isAllowed(UNAuthorizationStatus status) {
  return status == UNAuthorizationStatusAuthorized || status == UNAuthorizationStatusProvisional;
}

// Calls the delegate as the system does, and waits until it has returned.
void callDelegate(void (^call)(UNUserNotificationCenter*, id<UNUserNotificationCenterDelegate>)) {
  dispatch_sync(Centre::shared().queue, ^{
    UNUserNotificationCenter* centre = [UNUserNotificationCenter currentNotificationCenter];
    id<UNUserNotificationCenterDelegate> delegate = centre.delegate;
    Centre::shared().calledDelegate = delegate;
    if (delegate != nil) call(centre, delegate);
  });
}

UNNotification* notificationOf(const std::string& identifier) {
  UNNotificationRequest* request = Centre::shared().requests[identifier];
  if (request == nil) navora::objc::fail("no notification " + identifier + " is shown");
  return [UNNotification notificationWithRequest:request];
}

void click(UNNotification* notification) {
  UNNotificationResponse* response = [UNNotificationResponse responseWithNotification:notification];
  callDelegate(^(UNUserNotificationCenter* centre, id<UNUserNotificationCenterDelegate> delegate) {
    NavoraOnceHandler* once = [[NavoraOnceHandler alloc] init];
    [delegate userNotificationCenter:centre
        didReceiveNotificationResponse:response
                 withCompletionHandler:^{
                   [once call];
                 }];
  });
}

}  // namespace

namespace navora::doubles {

NotificationState& NotificationState::shared() {
  return Centre::shared().state;
}

void clickNotification(const std::string& identifier) {
  click(notificationOf(identifier));
}

void clickNotificationWithUserInfo(NSDictionary* userInfo) {
  UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
  content.userInfo = userInfo;
  click([UNNotification notificationWithRequest:[UNNotificationRequest requestWithIdentifier:@"old"
                                                                                     content:content
                                                                                     trigger:nil]]);
}

void presentNotification(const std::string& identifier) {
  UNNotification* notification = notificationOf(identifier);
  callDelegate(^(UNUserNotificationCenter* centre, id<UNUserNotificationCenterDelegate> delegate) {
    NavoraOnceHandler* once = [[NavoraOnceHandler alloc] init];
    [delegate userNotificationCenter:centre
             willPresentNotification:notification
               withCompletionHandler:^(UNNotificationPresentationOptions options) {
                 [once call];
                 const std::lock_guard lock(Centre::shared().mutex);
                 Centre::shared().presentation = options;
               }];
  });
}

std::optional<UNNotificationPresentationOptions> presentationOptions() {
  const std::lock_guard lock(Centre::shared().mutex);
  return Centre::shared().presentation;
}

}  // namespace navora::doubles

@implementation UNUserNotificationCenter

@synthesize delegate = _delegate;

+ (UNUserNotificationCenter*)currentNotificationCenter {
  if (!NotificationState::shared().isBundled) {
    navora::objc::raise("NSInternalInconsistencyException",
                        "bundleProxyForCurrentProcess is nil: not a bundled application");
  }
  static UNUserNotificationCenter* const centre =
      navora::objc::forever([[UNUserNotificationCenter alloc] init]);
  return centre;
}

// The user is asked once; later requests repeat the decision, and a refusal is an error.
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL, NSError* _Nullable))handler {
  NotificationState& state = NotificationState::shared();
  state.requested = options;
  NSError* error = state.status == UNAuthorizationStatusDenied ? notAllowed() : nil;
  if (state.status == UNAuthorizationStatusNotDetermined) {
    state.status = state.grants ? UNAuthorizationStatusAuthorized : UNAuthorizationStatusDenied;
  }
  const BOOL granted = isAllowed(state.status);
  dispatch_async(Centre::shared().queue, ^{
    handler(granted, error);
  });
}

- (void)getNotificationSettingsWithCompletionHandler:(void (^)(UNNotificationSettings*))handler {
  UNNotificationSettings* settings =
      [UNNotificationSettings settingsWithStatus:NotificationState::shared().status];
  dispatch_async(Centre::shared().queue, ^{
    handler(settings);
  });
}

- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable))handler {
  NotificationState& state = NotificationState::shared();
  NSError* error = nil;
  if (isAllowed(state.status)) {
    UNNotificationContent* content = request.content;
    const std::string identifier = utf8Of(request.identifier);
    std::erase_if(state.shown, [&](const auto& other) { return other.identifier == identifier; });
    state.shown.push_back(
        {identifier, utf8Of(content->_title), utf8Of(content->_body), content->_sound != nil});
    Centre::shared().requests[identifier] = request;
  } else {
    error = notAllowed();
  }
  dispatch_async(Centre::shared().queue, ^{
    if (handler != nil) handler(error);
  });
}

@end
