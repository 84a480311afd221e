#include "notifications/DesktopNotifications.h"

#include <chrono>
#include <utility>

#include "locale/DesktopLocale.h"
#include "notifications/DesktopNotificationPolicy.h"
#include "notifications/NotificationItems.h"

namespace navora {
namespace {

constexpr std::chrono::seconds pollInterval{60};

constexpr const char* captureIdentifier = "navora-quick-capture";
// No page has this address: it says that the notification belongs to the capture panel.
constexpr std::string_view captureUrl = "navora:quick-capture";

bool isUnreachable(const PlatformError& error) {
  return error.code == PlatformError::timedOutCode || error.code == PlatformError::unavailableCode;
}

std::string stateScript(AuthorizationStatus status, bool enabled) {
  const Json state{{"authorized", status == AuthorizationStatus::authorized},
                   {"enabled", enabled},
                   {"denied", status == AuthorizationStatus::denied}};
  return "window.NavoraNotificationState = " + state.dump() +
         "; window.dispatchEvent(new Event('tolvin:notificationschange'));";
}

}  // namespace

DesktopNotifications::DesktopNotifications(Dependencies dependencies,
                                           std::weak_ptr<WebView> webView, Url origin)
    : dependencies_(std::move(dependencies)),
      center_(dependencies_.notificationCenter),
      webView_(std::move(webView)),
      origin_(std::move(origin)),
      client_(dependencies_.mainQueue, dependencies_.system, dependencies_.makeHttpSession,
              webView_, origin_) {
  center_.setDelegate(this);
}

DesktopNotifications::~DesktopNotifications() {
  center_.setDelegate(nullptr);
}

bool DesktopNotifications::isEnabled() const {
  const auto stored = dependencies_.userDefaults.value(enabledKey);
  return !stored || *stored != Json(false);
}

void DesktopNotifications::debug(const std::string& line) const {
  dependencies_.system.debug(DebugArea::notifications, line);
}

void DesktopNotifications::start() {
  if (active_ || !isEnabled()) return;
  active_ = true;
  poll();
  scheduleNextPoll();
}

void DesktopNotifications::scheduleNextPoll() {
  timer_ = dependencies_.mainQueue.after(pollInterval, [this] {
    scheduleNextPoll();
    poll();
  });
}

void DesktopNotifications::stop() {
  active_ = false;
  timer_.reset();
  pollTask_ = {};
}

void DesktopNotifications::refresh() {
  publishAuthorization();
  poll();
}

void DesktopNotifications::poll() {
  if (!active_ || pollTask_.isRunning() || webView_.expired()) return;
  pollTask_ = pollService();
}

Task<> DesktopNotifications::pollService() {
  auto cookie = accept(co_await client_.cookieHeader());
  if (!cookie) co_return;
  auto selection = co_await fetch(*std::move(cookie));
  if (!selection) co_return;
  // The first list of an account is history: none of it is shown.
  if (!delivery_.isBaselined()) {
    debug("Marked the account's first list as seen; number of items: " +
          std::to_string(selection->items.size()));
    delivery_.baseline(selection->ids());
    co_return;
  }
  co_await deliver(*std::move(selection));
}

Task<std::optional<NotificationSelection>> DesktopNotifications::fetch(
    std::optional<std::string> cookie) {
  const auto me = accept(co_await client_.json("/api/auth/me", cookie));
  const auto userId = me ? readUserId(*me) : std::nullopt;
  if (!userId) co_return std::nullopt;
  if (accountId_ != userId) {
    accountId_ = userId;
    delivery_ = {};
  }
  const auto settingsReply = accept(co_await client_.json("/api/settings", cookie));
  auto settings = settingsReply ? NotificationSettings::read(*settingsReply) : std::nullopt;
  if (!settings) co_return std::nullopt;
  auto list = accept(co_await client_.body("/api/notifications", cookie));
  if (!list) co_return std::nullopt;
  co_return co_await select(*std::move(list), *std::move(settings));
}

template <class Reply>
std::optional<Reply> DesktopNotifications::accept(
    Expected<Reply, NotificationClient::PollError> reply) {
  if (reply) return *std::move(reply);
  if (reply.error() == NotificationClient::PollError::unauthorized) {
    accountId_.reset();
    delivery_ = {};
  }
  return std::nullopt;
}

// Reads the list in the background: a list of thousands would block the main thread for too long.
Task<std::optional<NotificationSelection>> DesktopNotifications::select(
    std::string list, NotificationSettings settings) {
  using Selection = std::optional<NotificationSelection>;
  std::function<Selection()> work = [list = std::move(list), settings = std::move(settings),
                                     now = dependencies_.system.now(), origin = origin_] {
    return NotificationSelection::read(list, settings, now, origin);
  };
  co_return co_await awaitBackground<Selection>(dependencies_.backgroundQueue, std::move(work));
}

Task<> DesktopNotifications::deliver(NotificationSelection selection) {
  const AuthorizationStatus status = co_await authorizationStatus();
  if (status != AuthorizationStatus::authorized) debug("The desktop has not granted permission");
  bool mayShow = status == AuthorizationStatus::authorized;
  for (NotificationSelection::Item& item : selection.items) {
    if (!item.content) {
      delivery_.ignore(item.id);
    } else if (mayShow) {
      const DesktopNotificationDelivery::Enqueue enqueue = [&](auto done) {
        debug("Showing item " + item.id);
        center_.add(userNotification(item.id, *std::move(item.content)), std::move(done));
      };
      // A notification that the desktop did not accept is offered again by the next poll.
      const auto error = co_await delivery_.deliver(item.id, enqueue);
      if (!error) continue;
      debug("The desktop rejected item " + item.id + ": " + error->localizedDescription);
      // Waiting for each of the others in turn would hold up later polls.
      mayShow = !isUnreachable(*error);
    }
  }
}

Task<AuthorizationStatus> DesktopNotifications::authorizationStatus() {
  co_return co_await awaitCallback<AuthorizationStatus>(
      [this](Callback<AuthorizationStatus> done) { center_.authorizationStatus(std::move(done)); });
}

void DesktopNotifications::requestAuthorization() {
  tasks_.add(authorize());
}

Task<> DesktopNotifications::authorize() {
  const auto result = co_await awaitCallback<NotificationCenter::AuthorizationResult>(
      [this](Callback<NotificationCenter::AuthorizationResult> done) {
        center_.requestAuthorization({.alert = true, .sound = true}, std::move(done));
      });
  if (!result) {
    debug("Requesting permission failed: " + result.error().localizedDescription);
    co_await runAlert(result.error().localizedDescription);
  } else if (!*result) {
    debug("The desktop denied permission");
    co_await runAlert(dependencies_.deniedText());
  } else {
    dependencies_.userDefaults.setValue(enabledKey, true);
    start();
    poll();
  }
  co_await publishState();
}

void DesktopNotifications::publishAuthorization() {
  tasks_.add(publishState());
}

Task<> DesktopNotifications::publishState() {
  publish(co_await authorizationStatus());
}

void DesktopNotifications::authorizationMayHaveChanged() {
  tasks_.add(publishChangedState());
}

Task<> DesktopNotifications::publishChangedState() {
  const AuthorizationStatus status = co_await authorizationStatus();
  if (status != published_) publish(status);
}

void DesktopNotifications::publish(AuthorizationStatus status) {
  const auto webView = webView_.lock();
  const auto url = webView ? webView->url() : std::nullopt;
  if (!url || !DesktopNotificationPolicy::sameOrigin(*url, origin_)) return;
  published_ = status;
  webView->evaluateJavaScript(stateScript(status, isEnabled()));
}

void DesktopNotifications::disable() {
  dependencies_.userDefaults.setValue(enabledKey, false);
  stop();
  publishAuthorization();
}

void DesktopNotifications::notifyOfCapture(std::string title, std::string text,
                                           std::function<void(bool)> completion) {
  UserNotification notification;
  notification.identifier = captureIdentifier;
  notification.title = std::move(title);
  notification.body = std::move(text);
  notification.url = captureUrl;
  tasks_.add(deliverCaptureNotice(std::move(notification), std::move(completion)));
}

Task<> DesktopNotifications::deliverCaptureNotice(UserNotification notification,
                                                  std::function<void(bool)> completion) {
  if (!isEnabled() || co_await authorizationStatus() != AuthorizationStatus::authorized) {
    completion(false);
    co_return;
  }
  const auto failure = co_await add(std::move(notification));
  completion(!failure);
}

Task<std::optional<PlatformError>> DesktopNotifications::add(UserNotification notification) {
  co_return co_await awaitCallback<std::optional<PlatformError>>(
      [&](Callback<std::optional<PlatformError>> done) {
        center_.add(notification, std::move(done));
      });
}

void DesktopNotifications::sendTest() {
  tasks_.add(deliverTest());
}

Task<> DesktopNotifications::deliverTest() {
  const AuthorizationStatus status = co_await authorizationStatus();
  if (status != AuthorizationStatus::authorized) {
    co_await authorize();
    co_return;
  }
  const auto failure = co_await add(testNotification(origin_));
  if (failure) co_await runAlert(failure->localizedDescription);
}

Task<> DesktopNotifications::runAlert(std::string text) {
  AlertDescription alert;
  alert.messageText = L("Навора");
  alert.informativeText = std::move(text);
  co_await awaitCallback<AlertResult>([this, &alert](Callback<AlertResult> done) {
    dependencies_.dialogs.runAlert(alert, std::move(done));
  });
}

PresentationOptions DesktopNotifications::willPresentNotification() {
  return {.banner = true, .sound = true};
}

void DesktopNotifications::didReceiveNotification(std::optional<std::string> text) {
  if (text == captureUrl) {
    if (onOpenCapture) onOpenCapture();
    return;
  }
  const auto url = text ? Url::parse(*text) : std::nullopt;
  if (!url || !DesktopNotificationPolicy::sameOrigin(*url, origin_)) return;
  if (onOpen) onOpen(*url);
}

}  // namespace navora
