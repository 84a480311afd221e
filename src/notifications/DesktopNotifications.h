#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "notifications/DesktopNotificationDelivery.h"
#include "notifications/NotificationClient.h"
#include "notifications/NotificationReplies.h"
#include "notifications/NotificationSelection.h"
#include "platform/NotificationCenter.h"
#include "platform/ObserverToken.h"
#include "platform/Platform.h"
#include "platform/WebView.h"
#include "support/Task.h"
#include "support/TaskGroup.h"
#include "support/Url.h"

namespace navora {

// Brings the service's notifications to the desktop: asks the service once a minute as the user who
// is signed in to the web view, and shows each new item once. Also asks the desktop for permission,
// tells the page how things stand, and opens what the user clicks.
class DesktopNotifications final : public NotificationCenterDelegate {
 public:
  // The user's default that switches everything off; absent means on.
  static constexpr std::string_view enabledKey = "desktopNotificationsEnabled";

  // The platform must outlive this object, which becomes the delegate of its notification center.
  DesktopNotifications(Platform& platform, std::weak_ptr<WebView> webView, Url origin);
  ~DesktopNotifications() override;

  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;

  // The user opened a notification that leads to this page of the origin.
  std::function<void(const Url&)> onOpen;

  // Begins to poll, unless the user has switched notifications off.
  void start();
  // Nothing is shown after this returns.
  void stop();
  // Tells the page how things stand and polls now.
  void refresh();

  // Asks the desktop for permission; the user is told if there is none.
  void requestAuthorization();
  // Tells the page how things stand.
  void publishAuthorization();
  // Switches notifications off, until the next `requestAuthorization`.
  void disable();
  // Shows the test notification, or asks for permission first.
  void sendTest();

  PresentationOptions willPresentNotification() override;
  void didReceiveNotification(std::optional<std::string> url) override;

 private:
  void poll();
  void scheduleNextPoll();
  Task<> pollService(std::shared_ptr<WebView> webView);
  // What the service has for the user, if it answered properly.
  Task<std::optional<NotificationSelection>> fetch(std::optional<std::string> cookie);
  Task<std::optional<NotificationSelection>> select(std::string list,
                                                    NotificationSettings settings);
  Task<> deliver(NotificationSelection selection);
  // The reply, unless the service refused it, which may mean that the account has gone.
  template <class Reply>
  std::optional<Reply> accept(Expected<Reply, NotificationClient::PollError> reply);

  Task<AuthorizationStatus> authorizationStatus();
  Task<> authorize();
  Task<> publishState();
  Task<> deliverTest();
  Task<> runAlert(std::string text);
  bool isEnabled() const;

  Platform& platform_;
  NotificationCenter& center_;
  const std::weak_ptr<WebView> webView_;
  const Url origin_;

  NotificationClient client_;
  bool active_ = false;
  std::unique_ptr<ObserverToken> timer_;
  std::optional<std::string> accountId_;
  DesktopNotificationDelivery delivery_;
  // At most one poll at a time; whatever it waits for, it ends with this.
  Task<> pollTask_;
  TaskGroup tasks_;
};

}  // namespace navora
