#include <gmock/gmock.h>

#include "platform/NavigationDelegate.h"
#include "unit/app/AppDelegateTest.h"
#include "unit/capture/AppearanceDictionary.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class NavoraAppDelegateCaptureTest : public AppDelegateTest {
 protected:
  FakeCapturePanelView& panel() { return platform_.capturePanel(); }

  void finishLoading(const char* url) {
    webView().setUrl(testUrl(url));
    webView().navigationDelegate()->didFinishNavigation();
  }
  // Submits a note while the user is not signed in.
  void submitSignedOut() {
    delegate_->quickCapture();
    panel().editor().type("Note");
    panel().clickSubmit();
    log().take();
    while (webView().cookieQuestions() > 0)
      webView().answerCookies();
  }
};

TEST_F(NavoraAppDelegateCaptureTest, KeepsTheDraftWhenTheApplicationEnds) {
  launch();
  delegate_->quickCapture();
  panel().editor().type("Half a thought");
  delegate_->applicationWillTerminate();
  launch();
  EXPECT_EQ(panel().editor().text(), "Half a thought");
}

// A submission that fails after the user has clicked into another program.
class HiddenCaptureFailureTest : public NavoraAppDelegateCaptureTest {
 protected:
  FakeNotificationCenter& center() { return platform_.notificationCenter(); }
  void failWhileHidden() {
    launch();
    delegate_->quickCapture();
    panel().editor().type("Note");
    panel().clickSubmit();
    panel().clickElsewhere();
    platform_.mainQueue().advance(std::chrono::seconds(2));
  }
};

TEST_F(HiddenCaptureFailureTest, IsShownAsANotificationThatOpensThePanel) {
  failWhileHidden();
  center().answerStatus();
  ASSERT_EQ(center().added.size(), 1u);
  EXPECT_EQ(center().added[0].title, "Быстрая запись — Навора");
  EXPECT_EQ(center().added[0].body,
            "Нет связи с сервером. Черновик сохранён — попробуйте ещё раз.");
  center().finishAdd();
  EXPECT_FALSE(panel().isVisible());
  log().take();
  center().click(center().added[0].url);
  EXPECT_TRUE(panel().isVisible());
  EXPECT_THAT(log().take(), Contains("panel.makeKeyAndOrderFront"));
}

TEST_F(HiddenCaptureFailureTest, ShowsThePanelWithoutTheKeyboardWhereNotificationsAreOff) {
  failWhileHidden();
  log().take();
  center().status = AuthorizationStatus::denied;
  center().answerStatus();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_THAT(log().take(), Contains("panel.orderFront"));
}

TEST_F(NavoraAppDelegateCaptureTest, OpensThePanelFromEveryTrigger) {
  launch();
  const auto expectOpened = [&] {
    EXPECT_TRUE(panel().isVisible());
    panel().editor().press({KeyEvent::escapeKey, 0});
    EXPECT_FALSE(panel().isVisible());
  };
  delegate_->quickCapture();
  expectOpened();
  delegate_->applicationDidReceiveCaptureRequest();
  expectOpened();
  platform_.hotKeys().press();
  platform_.mainQueue().runDue();
  expectOpened();
  EXPECT_TRUE(
      platform_.hotKeys().pressLocally({KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift}));
  expectOpened();
}

TEST_F(NavoraAppDelegateCaptureTest, OpensNothingWhileARestartIsPrepared) {
  launch();
  prepareRestart();
  delegate_->quickCapture();
  delegate_->applicationDidReceiveCaptureRequest();
  platform_.hotKeys().press();
  platform_.mainQueue().runDue();
  EXPECT_TRUE(
      platform_.hotKeys().pressLocally({KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift}));
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(NavoraAppDelegateCaptureTest, ShowsTheLoginPageWhenANoteNeedsALogin) {
  launchShowing(testUrl(home));
  submitSignedOut();
  EXPECT_THAT(log().take(),
              ElementsAre("panel.orderOut", "window.makeKeyAndOrderFront", "application.activate",
                          "webView.load https://navora.example/login"));
  EXPECT_EQ(webView().loads().back().timeoutSeconds, 60);
}

TEST_F(NavoraAppDelegateCaptureTest, DoesNotReloadAShownLoginPage) {
  launchShowing(testUrl("https://navora.example/login?next=1"));
  submitSignedOut();
  EXPECT_THAT(log().take(),
              ElementsAre("panel.orderOut", "window.makeKeyAndOrderFront", "application.activate"));
}

TEST_F(NavoraAppDelegateCaptureTest, ShowsTheDraftAgainOnTheRootPageAfterALogin) {
  launchShowing(testUrl(home));
  submitSignedOut();
  finishLoading("https://navora.example/login");
  finishLoading("https://navora.example/welcome");
  EXPECT_FALSE(panel().isVisible());
  finishLoading("https://navora.example/#today");
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(panel().editor().text(), "Note");
}

TEST_F(NavoraAppDelegateCaptureTest, ShowsNoDraftWithoutALogin) {
  launch();
  finishLoading(home);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(NavoraAppDelegateCaptureTest, AppliesThePagesAppearanceToPanelAndWindow) {
  launchShowing(testUrl(home));
  Json look = appearanceDictionary();
  look["theme"] = "dark";
  webView().post("navoraCaptureAppearance", look.dump(), mainFrame(home));
  EXPECT_EQ(panel().editor().style().fontSize, 14);
  EXPECT_EQ(window().appearance(), WindowAppearance::dark);
}

TEST_F(NavoraAppDelegateCaptureTest, IgnoresInvalidAndUntrustedAppearances) {
  launchShowing(testUrl(home));
  const auto style = panel().editor().style();
  Json wrong = appearanceDictionary();
  wrong.erase("ink");
  webView().post("navoraCaptureAppearance", wrong.dump(), mainFrame(home));
  webView().post("navoraCaptureAppearance", "[]", mainFrame(home));
  const std::string good = appearanceDictionary().dump();
  webView().post("navoraCaptureAppearance", good, subframe(home));
  webView().post("navoraCaptureAppearance", good, mainFrame("https://remote.example/"));
  EXPECT_EQ(panel().editor().style(), style);
  EXPECT_THAT(log().take(), Not(Contains("window.setAppearance")));
}

TEST_F(NavoraAppDelegateCaptureTest, UnregistersTheShortcutWhenItTerminates) {
  launchShowing(testUrl(home));
  delegate_->applicationWillTerminate();
  EXPECT_THAT(log().take(), ElementsAre("hotKeys.unregister", "hotKeys.removeEventHandler",
                                        "hotKeys.removeLocalMonitor"));
}

}  // namespace
}  // namespace navora
