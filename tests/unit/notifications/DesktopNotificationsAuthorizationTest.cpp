#include "unit/notifications/DesktopNotificationsTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DesktopNotificationsAuthorizationTest : public DesktopNotificationsTest {
 protected:
  // The state that was last published to the page.
  Json publishedState() {
    const std::string before = "window.NavoraNotificationState = ";
    const std::string after = "; window.dispatchEvent(new Event('tolvin:notificationschange'));";
    if (webView->scripts().empty()) return nullptr;
    const std::string& script = webView->scripts().back();
    EXPECT_TRUE(script.starts_with(before) && script.ends_with(after)) << script;
    return parseJson(script.substr(before.size(), script.size() - before.size() - after.size()))
        .value_or(Json("unreadable"));
  }
  static Json state(bool authorized, bool enabled, bool denied) {
    return {{"authorized", authorized}, {"enabled", enabled}, {"denied", denied}};
  }
  std::optional<Json> stored() {
    return platform.userDefaults().value(DesktopNotifications::enabledKey);
  }
  const auto& alerts() { return platform.dialogs().alerts.requests(); }
  static AlertDescription alert(const std::string& text) {
    AlertDescription description;
    description.messageText = "Навора";
    description.informativeText = text;
    return description;
  }
};

TEST_F(DesktopNotificationsAuthorizationTest, PublishesTheStateToThePage) {
  const std::vector<std::pair<AuthorizationStatus, Json>> cases{
      {AuthorizationStatus::authorized, state(true, true, false)},
      {AuthorizationStatus::denied, state(false, true, true)},
      {AuthorizationStatus::notDetermined, state(false, true, false)},
      {AuthorizationStatus::provisional, state(false, true, false)}};
  for (const auto& [status, expected] : cases) {
    center.status = status;
    notifications->publishAuthorization();
    center.answerStatus();
    EXPECT_EQ(publishedState(), expected);
  }
  platform.userDefaults().setValue(DesktopNotifications::enabledKey, false);
  notifications->publishAuthorization();
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(false, false, false));
}

TEST_F(DesktopNotificationsAuthorizationTest, PublishesEachChangeOfTheStatusOnce) {
  notifications->publishAuthorization();
  center.answerStatus();
  center.changeStatus(AuthorizationStatus::denied);
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(false, true, true));
  center.changeStatus(AuthorizationStatus::authorized);
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(true, true, false));
  ASSERT_EQ(webView->scripts().size(), 3U);
  // A service that is started on demand comes and goes without a change.
  center.changeStatus(AuthorizationStatus::authorized);
  center.answerStatus();
  EXPECT_EQ(webView->scripts().size(), 3U);
  // What the page asks for, and a new page, gets the state in any case.
  notifications->publishAuthorization();
  center.answerStatus();
  EXPECT_EQ(webView->scripts().size(), 4U);
}

TEST_F(DesktopNotificationsAuthorizationTest, PublishesAChangeThatAForeignPageHasMissed) {
  notifications->publishAuthorization();
  center.answerStatus();
  webView->setUrl(testUrl("https://remote.example/"));
  center.changeStatus(AuthorizationStatus::denied);
  center.answerStatus();
  EXPECT_EQ(webView->scripts().size(), 1U);
  webView->setUrl(origin);
  center.changeStatus(AuthorizationStatus::denied);
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(false, true, true));
}

TEST_F(DesktopNotificationsAuthorizationTest, PublishesNothingToAForeignPage) {
  for (const char* url : {"https://remote.example/", "https://user@navora.example/",
                          "http://navora.example/", "about:blank"}) {
    webView->setUrl(testUrl(url));
    notifications->publishAuthorization();
    center.answerStatus();
  }
  webView->setUrl(std::nullopt);
  notifications->publishAuthorization();
  center.answerStatus();
  EXPECT_THAT(webView->scripts(), IsEmpty());
}

TEST_F(DesktopNotificationsAuthorizationTest, ChecksThePageAfterTheDesktopHasAnswered) {
  notifications->publishAuthorization();
  webView->setUrl(testUrl("https://remote.example/"));
  center.answerStatus();
  EXPECT_THAT(webView->scripts(), IsEmpty());
  notifications->publishAuthorization();
  webView.reset();
  center.answerStatus();
}

TEST_F(DesktopNotificationsAuthorizationTest, StartsPollingWhenPermissionIsGranted) {
  platform.userDefaults().setValue(DesktopNotifications::enabledKey, false);
  notifications->requestAuthorization();
  EXPECT_THAT(center.requests, ElementsAre(NotificationCenter::Options{true, true}));
  center.answerRequest(true);
  EXPECT_EQ(stored(), Json(true));
  EXPECT_EQ(webView->cookieQuestions(), 1u);
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(true, true, false));
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(DesktopNotificationsAuthorizationTest, PollsAtOnceIfAlreadyActive) {
  startWithBaseline();
  notifications->requestAuthorization();
  center.answerRequest(true);
  EXPECT_EQ(webView->cookieQuestions(), 1u);
  webView->answerCookies();
  EXPECT_EQ(platform.mainQueue().pendingCount(), 1u);
}

TEST_F(DesktopNotificationsAuthorizationTest,
       ShowsAnAlertWhenPermissionIsDeniedAndKeepsTheDefault) {
  center.status = AuthorizationStatus::denied;
  notifications->requestAuthorization();
  center.answerRequest(false);
  EXPECT_THAT(alerts(), ElementsAre(alert("Уведомления запрещены")));
  EXPECT_THAT(webView->scripts(), IsEmpty());
  platform.dialogs().alerts.answer({});
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(false, true, true));
  EXPECT_EQ(stored(), std::nullopt);
  EXPECT_EQ(webView->cookieQuestions(), 0u);
}

TEST_F(DesktopNotificationsAuthorizationTest, ShowsTheDesktopsError) {
  notifications->requestAuthorization();
  center.answerRequest(Unexpected(PlatformError{"desktop", 1, "Out of order"}));
  EXPECT_THAT(alerts(), ElementsAre(alert("Out of order")));
  platform.dialogs().alerts.answer({});
  center.answerStatus();
  EXPECT_EQ(stored(), std::nullopt);
  EXPECT_EQ(publishedState(), state(true, true, false));
}

TEST_F(DesktopNotificationsAuthorizationTest, StopsPollingWhenDisabled) {
  startWithBaseline();
  notifications->disable();
  EXPECT_EQ(stored(), Json(false));
  EXPECT_EQ(platform.mainQueue().pendingCount(), 0u);
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(true, false, false));
  notifications->start();
  EXPECT_EQ(platform.mainQueue().pendingCount(), 0u);
}

TEST_F(DesktopNotificationsAuthorizationTest, PublishesAndPollsWhenRefreshed) {
  startWithBaseline();
  notifications->refresh();
  center.answerStatus();
  EXPECT_EQ(publishedState(), state(true, true, false));
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(DesktopNotificationsAuthorizationTest, SendsTheTestNotification) {
  notifications->sendTest();
  center.answerStatus();
  EXPECT_THAT(center.added, ElementsAre(UserNotification{"navora-test", "Навора",
                                                         "Уведомления включены на этом устройстве",
                                                         true, "https://navora.example/#today"}));
  center.finishAdd();
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(DesktopNotificationsAuthorizationTest, ShowsTheErrorOfAFailedTest) {
  notifications->sendTest();
  center.answerStatus();
  center.finishAdd(PlatformError{"desktop", 1, "No daemon"});
  EXPECT_THAT(alerts(), ElementsAre(alert("No daemon")));
}

TEST_F(DesktopNotificationsAuthorizationTest, RequestsPermissionInsteadOfSendingTheTest) {
  for (const auto status : {AuthorizationStatus::denied, AuthorizationStatus::notDetermined,
                            AuthorizationStatus::provisional}) {
    center.status = status;
    notifications->sendTest();
    center.answerStatus();
    center.answerRequest(false);
    platform.dialogs().alerts.answer({});
    center.answerStatus();
  }
  EXPECT_EQ(center.requests.size(), 3u);
  EXPECT_EQ(alerts().size(), 3u);
  EXPECT_THAT(center.added, IsEmpty());
}

// The notification about a quick note, and whether it was shown.
class CaptureNoticeTest : public DesktopNotificationsAuthorizationTest {
 protected:
  void notify() {
    notifications->notifyOfCapture("Quick note", "Not sent",
                                   [this](bool result) { shown = result; });
  }
  std::optional<bool> shown;
};

TEST_F(CaptureNoticeTest, IsShownAndOpensThePanel) {
  int opens = 0;
  notifications->onOpenCapture = [&opens] { ++opens; };
  notify();
  center.answerStatus();
  EXPECT_EQ(shown, std::nullopt);
  center.finishAdd();
  EXPECT_EQ(shown, true);
  EXPECT_THAT(center.added,
              ElementsAre(UserNotification{"navora-quick-capture", "Quick note", "Not sent", true,
                                           "navora:quick-capture"}));
  center.click(center.added[0].url);
  EXPECT_EQ(opens, 1);
}

TEST_F(CaptureNoticeTest, IsNotShownWithoutPermission) {
  for (const auto status : {AuthorizationStatus::denied, AuthorizationStatus::notDetermined,
                            AuthorizationStatus::provisional}) {
    center.status = status;
    shown.reset();
    notify();
    center.answerStatus();
    EXPECT_EQ(shown, false);
  }
  EXPECT_THAT(center.added, IsEmpty());
  EXPECT_THAT(center.requests, IsEmpty());
}

TEST_F(CaptureNoticeTest, IsNotShownIfTheUserHasDisabledNotifications) {
  notifications->disable();
  notify();
  EXPECT_EQ(shown, false);
}

TEST_F(CaptureNoticeTest, SaysIfTheDesktopRejectsIt) {
  notify();
  center.answerStatus();
  center.finishAdd(PlatformError{"desktop", 1, "No daemon"});
  EXPECT_EQ(shown, false);
}

TEST_F(DesktopNotificationsAuthorizationTest, PresentsABannerAndASoundInTheForeground) {
  EXPECT_EQ(center.delegate()->willPresentNotification(), (PresentationOptions{true, true}));
}

TEST_F(DesktopNotificationsAuthorizationTest, OpensPagesOfTheOrigin) {
  center.click("https://navora.example/#today");
  center.click("https://navora.example/circles/7");
  EXPECT_THAT(opened, ElementsAre(testUrl("https://navora.example/#today"),
                                  testUrl("https://navora.example/circles/7")));
}

TEST_F(DesktopNotificationsAuthorizationTest, OpensNoOtherUrl) {
  for (const char* url : {"", "/#today", "https://remote.example/#today",
                          "https://user@navora.example/", "javascript:alert(1)", "\xFF"})
    center.click(url);
  center.click(std::nullopt);
  EXPECT_THAT(opened, IsEmpty());
  notifications->onOpen = nullptr;
  center.click("https://navora.example/#today");
}

TEST_F(DesktopNotificationsAuthorizationTest, RemovesItselfAsDelegateWhenItIsDestroyed) {
  notifications->requestAuthorization();
  notifications.reset();
  EXPECT_EQ(center.delegate(), nullptr);
  center.answerRequest(true);
  EXPECT_EQ(stored(), std::nullopt);
}

}  // namespace
}  // namespace navora
