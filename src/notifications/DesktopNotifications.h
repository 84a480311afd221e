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
#include "origin/ServiceClient.h"
#include "platform/BackgroundQueue.h"
#include "platform/Dialogs.h"
#include "platform/MainQueue.h"
#include "platform/NotificationCenter.h"
#include "platform/ObserverToken.h"
#include "platform/System.h"
#include "platform/UserDefaults.h"
#include "platform/WebView.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Shows the service's notifications on the desktop: polls the service once a minute as the user who
// is signed in to the web view and shows each new item once. Also asks the desktop for permission,
// publishes the authorization to the page, and opens the notifications that the user clicks.
class DesktopNotifications final : public NotificationCenterDelegate {
 public:
  // The user default that disables notifications if it is false.
  static constexpr std::string_view enabledKey = "desktopNotificationsEnabled";

  // The references must outlive this object.
  struct Dependencies {
    BackgroundQueue& backgroundQueue;
    Dialogs& dialogs;
    MainQueue& mainQueue;
    NotificationCenter& notificationCenter;
    const System& system;
    UserDefaults& userDefaults;
    // Called once, before the first request.
    ServiceClient::MakeHttpSession makeHttpSession;
    // Returns the text that says why no notification can be shown, in the current language.
    std::function<std::string()> deniedText;
  };

  // Becomes the delegate of the notification center.
  DesktopNotifications(Dependencies dependencies, std::weak_ptr<WebView> webView, Url origin);
  ~DesktopNotifications() override;

  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;

  // Called when the user opens a notification, with its page of the origin.
  std::function<void(const Url&)> onOpen;

  // Called when the user opens a notification of notifyOfCapture().
  std::function<void()> onOpenCapture;

  // Starts polling, unless the user has disabled notifications.
  void start();
  // Stops polling and cancels a poll in progress. At most the notification that is being handed to
  // the desktop still appears.
  void stop();
  // Publishes the authorization to the page and polls at once.
  void refresh();

  // Asks the desktop for permission. If it is granted, enables notifications and starts polling;
  // otherwise shows an alert.
  void requestAuthorization();
  // Tells the page whether notifications are authorized, enabled and denied.
  void publishAuthorization();
  // Disables notifications until the next `requestAuthorization` that is granted.
  void disable();
  // Shows a notification about a quick note, whatever the service's quiet hours, in place of the
  // last one. Calls `completion` with whether it was shown: false if notifications are disabled or
  // not authorized, or the desktop rejects it.
  void notifyOfCapture(std::string title, std::string text, std::function<void(bool)> completion);
  // Shows the test notification; without permission, asks for it instead.
  void sendTest();

  PresentationOptions willPresentNotification() override;
  void didReceiveNotification(std::optional<std::string> url) override;
  // Publishes the authorization to the page if it is not the one last published.
  void authorizationMayHaveChanged() override;

 private:
  void poll();
  void scheduleNextPoll();
  Task<> pollService();
  // Fetches and selects the signed-in user's notifications. Returns nullopt after any failure.
  Task<std::optional<NotificationSelection>> fetch(std::optional<std::string> cookie);
  Task<std::optional<NotificationSelection>> select(std::string list,
                                                    NotificationSettings settings);
  Task<> deliver(NotificationSelection selection);
  // Returns the reply, or nullopt for an error. `unauthorized` also forgets the account, so that
  // the next one starts with a ledger of its own.
  template <class Reply>
  std::optional<Reply> accept(Expected<Reply, NotificationClient::PollError> reply);

  Task<AuthorizationStatus> authorizationStatus();
  Task<> authorize();
  Task<> publishState();
  Task<> publishChangedState();
  void publish(AuthorizationStatus status);
  Task<std::optional<PlatformError>> add(UserNotification notification);
  Task<> deliverCaptureNotice(UserNotification notification, std::function<void(bool)> completion);
  Task<> deliverTest();
  Task<> runAlert(std::string text);
  bool isEnabled() const;
  void debug(const std::string& line) const;

  const Dependencies dependencies_;
  NotificationCenter& center_;
  const std::weak_ptr<WebView> webView_;
  const Url origin_;

  NotificationClient client_;
  bool active_ = false;
  std::unique_ptr<ObserverToken> timer_;
  // The status that the page was last told.
  std::optional<AuthorizationStatus> published_;
  std::optional<std::string> accountId_;
  DesktopNotificationDelivery delivery_;
  // The poll in progress. At most one runs at a time; destroying the task cancels it.
  Task<> pollTask_;
  TaskGroup tasks_;
};

}  // namespace navora
