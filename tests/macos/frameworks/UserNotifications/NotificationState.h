#pragma once

#include <optional>
#include <string>
#include <vector>

#import <UserNotifications/UserNotifications.h>

namespace navora::doubles {

struct ShownNotification {
  std::string identifier;
  std::string title;
  std::string body;
  bool hasSound = false;
};

// The user's decisions and what the notification centre shows. Returns to these initial values
// after every test.
struct NotificationState {
  static NotificationState& shared();

  UNAuthorizationStatus status = UNAuthorizationStatusNotDetermined;
  // What the user answers when asked for the first time.
  bool grants = true;
  // The options of the last request for permission.
  std::optional<UNAuthorizationOptions> requested = {};
  // Whether the process is a bundled application.
  bool isBundled = true;

  // In the order in which they were added.
  std::vector<ShownNotification> shown = {};
};

// Acts as a click on the notification. The delegate is called on another thread, which has returned
// from it when the function returns.
void clickNotification(const std::string& identifier);
// The same for one that another version of the application has shown.
void clickNotificationWithUserInfo(NSDictionary* userInfo);
// Acts as the arrival of a notification while the application is frontmost.
void presentNotification(const std::string& identifier);
// What the application has answered to it; nullopt before that.
std::optional<UNNotificationPresentationOptions> presentationOptions();

}  // namespace navora::doubles
