#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

struct UserNotification {
  // A notification replaces an earlier one with the same identifier.
  std::string identifier;
  // Plain text of any length. The host shortens it to what the desktop can show, and never lets it
  // be interpreted as markup.
  std::string title;
  std::string body;
  bool defaultSound = true;
  // Passed to didReceiveNotification() when the user opens the notification.
  std::string url;
  // Whether the identifier names one event. Then a host that learns late that the notification was
  // shown does not show it again. Otherwise every one is a new event.
  bool once = false;

  bool operator==(const UserNotification&) const = default;
};

enum class AuthorizationStatus { notDetermined, denied, authorized, provisional };

struct PresentationOptions {
  bool banner = false;
  bool sound = false;

  bool operator==(const PresentationOptions&) const = default;
};

// Receives the events of shown notifications. Called on the main thread.
class NotificationCenterDelegate {
 public:
  virtual ~NotificationCenterDelegate() = default;

  // Returns how to show a notification while the application is frontmost.
  virtual PresentationOptions willPresentNotification() = 0;
  // The user opened a notification. `url` is the one it was added with, nullopt if it had none.
  virtual void didReceiveNotification(std::optional<std::string> url) = 0;
  // The authorization status may have changed. Where the desktop does not report changes this is
  // never called.
  virtual void authorizationMayHaveChanged() = 0;
};

// The desktop's notification service. Each completion is called once, on the main thread, after the
// function has returned.
class NotificationCenter {
 public:
  struct Options {
    bool alert = false;
    bool sound = false;
    bool operator==(const Options&) const = default;
  };
  // True if the user or the desktop granted permission.
  using AuthorizationResult = Expected<bool, PlatformError>;

  virtual ~NotificationCenter() = default;

  // The delegate must be replaced by null before it is destroyed.
  virtual void setDelegate(NotificationCenterDelegate* delegate) = 0;

  virtual void requestAuthorization(Options options,
                                    std::function<void(AuthorizationResult)> completion) = 0;
  virtual void authorizationStatus(std::function<void(AuthorizationStatus)> completion) = 0;
  // Shows a notification. The completion gets nullopt once the desktop has accepted it.
  virtual void add(const UserNotification& notification,
                   std::function<void(std::optional<PlatformError>)> completion) = 0;
};

}  // namespace navora
