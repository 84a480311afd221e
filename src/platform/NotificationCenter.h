#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

struct UserNotification {
  // A later notification with the same identifier takes the place of an earlier one.
  std::string identifier;
  // Plain text of any length and content; the host makes of it what the desktop can show, and never
  // markup.
  std::string title;
  std::string body;
  bool defaultSound = true;
  // What comes back when the user opens the notification.
  std::string url;

  bool operator==(const UserNotification&) const = default;
};

enum class AuthorizationStatus { notDetermined, denied, authorized, provisional };

struct PresentationOptions {
  bool banner = false;
  bool sound = false;

  bool operator==(const PresentationOptions&) const = default;
};

class NotificationCenterDelegate {
 public:
  virtual ~NotificationCenterDelegate() = default;

  // How a notification is shown while the application is in front.
  virtual PresentationOptions willPresentNotification() = 0;
  // The user opened a notification; `url` is the one it was given, none if it came without.
  virtual void didReceiveNotification(std::optional<std::string> url) = 0;
};

// The desktop's notifications. Completions come once, later, on the main thread.
class NotificationCenter {
 public:
  struct Options {
    bool alert = false;
    bool sound = false;
    bool operator==(const Options&) const = default;
  };
  // Whether the user (or the desktop) has granted it.
  using AuthorizationResult = Expected<bool, PlatformError>;

  virtual ~NotificationCenter() = default;

  // None to take it away; it must be taken away before it ends.
  virtual void setDelegate(NotificationCenterDelegate* delegate) = 0;

  virtual void requestAuthorization(Options options,
                                    std::function<void(AuthorizationResult)> completion) = 0;
  virtual void authorizationStatus(std::function<void(AuthorizationStatus)> completion) = 0;
  // None if the desktop has taken the notification over.
  virtual void add(const UserNotification& notification,
                   std::function<void(std::optional<PlatformError>)> completion) = 0;
};

}  // namespace navora
