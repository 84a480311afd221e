#include <gmock/gmock.h>

#include "platform/NavigationDelegate.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NavoraAppDelegateNotificationsTest : public AppDelegateTest {
 protected:
  FakeNotificationCenter& center() { return platform_.notificationCenter(); }
  void post(const std::string& body, const FrameInfo& frame = mainFrame(home)) {
    webView().post("navoraNotifications", body, frame);
  }
};

TEST_F(NavoraAppDelegateNotificationsTest, PollsFromLaunchToTermination) {
  launch();
  EXPECT_EQ(webView().cookieQuestions(), 1U);
  webView().answerCookies();
  const std::size_t withPoll = platform_.mainQueue().pendingCount();
  delegate_->applicationWillTerminate();
  EXPECT_EQ(platform_.mainQueue().pendingCount(), withPoll - 1);
}

TEST_F(NavoraAppDelegateNotificationsTest, PerformsThePagesCommands) {
  launchShowing(testUrl(home));
  post(R"("status")");
  EXPECT_EQ(center().statusQuestions(), 1U);
  center().answerStatus();
  EXPECT_THAT(webView().scripts().back(), HasSubstr("window.NavoraNotificationState = "));
  post(R"("test")");
  center().answerStatus();
  EXPECT_EQ(center().added.size(), 1U);
  post(R"("enable")");
  EXPECT_EQ(center().requests.size(), 1U);
  post(R"("disable")");
  EXPECT_EQ(platform_.userDefaults().value("desktopNotificationsEnabled"), Json(false));
}

TEST_F(NavoraAppDelegateNotificationsTest, IgnoresEverythingElse) {
  launchShowing(testUrl(home));
  for (const char* body : {R"("Enable")", R"("enable ")", R"("")", "null", "7", "true",
                           R"(["enable"])", R"({"command": "enable"})"})
    post(body);
  post(R"("enable")", subframe(home));
  post(R"("enable")", mainFrame("https://remote.example/"));
  EXPECT_EQ(center().statusQuestions(), 0U);
  EXPECT_THAT(center().requests, IsEmpty());
  EXPECT_EQ(platform_.userDefaults().value("desktopNotificationsEnabled"), std::nullopt);
}

TEST_F(NavoraAppDelegateNotificationsTest, RefreshesAfterEveryLoadAndEveryResume) {
  launchShowing(testUrl(home));
  webView().navigationDelegate()->didFinishNavigation();
  EXPECT_EQ(center().statusQuestions(), 1U);
  delegate_->applicationDidBecomeActive();
  system().wake();
  EXPECT_EQ(center().statusQuestions(), 3U);
  webView().setUrl(testUrl("https://remote.example/"));
  delegate_->applicationDidBecomeActive();
  EXPECT_EQ(center().statusQuestions(), 4U);
}

TEST_F(NavoraAppDelegateNotificationsTest, OpensAClickedNotification) {
  launchShowing(testUrl(home));
  center().click("https://navora.example/circles/7");
  EXPECT_EQ(webView().url(), testUrl("https://navora.example/circles/7"));
  EXPECT_THAT(log().take(), ElementsAre("window.makeKeyAndOrderFront", "application.activate",
                                        "webView.load https://navora.example/circles/7"));
  center().click("https://remote.example/");
  EXPECT_THAT(log().take(), IsEmpty());
}

}  // namespace
}  // namespace navora
