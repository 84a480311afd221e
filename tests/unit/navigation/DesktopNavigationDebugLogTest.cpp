#include <gmock/gmock.h>

#include "unit/navigation/DesktopNavigationTest.h"

namespace navora {
namespace {

using testing::ElementsAre;

// NAVORA_DEBUG=navigation logs each decision with its URL, and a refusal with its rule.
class DesktopNavigationDebugLogTest : public DesktopNavigationTest {
 protected:
  NavigationAction clickOn(std::string_view url) {
    NavigationAction action;
    action.url = testUrl(url);
    action.type = NavigationType::linkActivated;
    action.sourceFrame = trustedFrame_;
    action.targetFrame = trustedFrame_;
    action.request = std::make_shared<FakeRequest>(*action.url);
    return action;
  }

  std::vector<std::string> linesAbout(const NavigationAction& action) {
    decide(action);
    return std::exchange(platform_.system().debugged, {});
  }
};

TEST_F(DesktopNavigationDebugLogTest, TellsWhatBecameOfPagesOfTheService) {
  auto action = clickOn("https://navora.example/circles");
  EXPECT_THAT(linesAbout(action),
              ElementsAre("navigation: Allowed https://navora.example/circles"));
  action.targetFrame.reset();
  EXPECT_THAT(linesAbout(action),
              ElementsAre("navigation: Loading in this window, instead of a new "
                          "one: https://navora.example/circles"));
  action.shouldPerformDownload = true;
  EXPECT_THAT(linesAbout(action),
              ElementsAre("navigation: Downloading https://navora.example/circles"));
}

TEST_F(DesktopNavigationDebugLogTest, TellsThatAForeignLinkLeavesTheApplication) {
  EXPECT_THAT(linesAbout(clickOn("https://remote.example/")),
              ElementsAre("navigation: Opening in another program: https://remote.example/"));
}

TEST_F(DesktopNavigationDebugLogTest, NamesTheRuleThatRefusedANavigation) {
  auto withoutAddress = clickOn("https://navora.example/");
  withoutAddress.url.reset();
  EXPECT_THAT(linesAbout(withoutAddress),
              ElementsAre("navigation: Refused a navigation: the navigation has no address"));

  auto notClicked = clickOn("https://remote.example/");
  notClicked.type = NavigationType::other;
  EXPECT_THAT(linesAbout(notClicked),
              ElementsAre("navigation: Refused https://remote.example/: a foreign address needs a "
                          "clicked link or a request for a new window"));

  auto fromFrame = clickOn("https://remote.example/");
  fromFrame.sourceFrame = subframe("https://navora.example/");
  EXPECT_THAT(linesAbout(fromFrame),
              ElementsAre("navigation: Refused https://remote.example/: a foreign address needs "
                          "the service's main frame as its source"));

  EXPECT_THAT(linesAbout(clickOn("file:///etc/passwd")),
              ElementsAre("navigation: Refused file:///etc/passwd: the address is of a kind that "
                          "other programs are not given"));
}

TEST_F(DesktopNavigationDebugLogTest, TellsWhatBecameOfResponses) {
  navigation_->decidePolicyForResponse({testUrl("https://remote.example/"), true});
  navigation_->decidePolicyForResponse({testUrl("https://navora.example/notes.zip"), false});
  EXPECT_THAT(
      platform_.system().debugged,
      ElementsAre(
          "navigation: Refused https://remote.example/: the response is not from the service",
          "navigation: Downloading a response that cannot be shown: "
          "https://navora.example/notes.zip"));
}

TEST_F(DesktopNavigationDebugLogTest, TellsAboutQuestionsOfOtherFrames) {
  const FrameInfo frame = subframe("https://navora.example/");
  navigation_->runAlertPanel("Hello", frame, [] {});
  navigation_->runOpenPanel({}, frame, [](const auto&) {});
  EXPECT_THAT(platform_.system().debugged,
              ElementsAre("navigation: Refused an alert: only the service's main frame may ask the "
                          "user",
                          "navigation: Refused a file chooser: only the service's main frame may "
                          "ask the user"));
}

TEST_F(DesktopNavigationDebugLogTest, TellsAboutFailedLoads) {
  navigation_->didFailNavigation({"WebKitNetworkError", 302, "Cannot connect"});
  navigation_->webContentProcessDidTerminate();
  EXPECT_THAT(platform_.system().debugged,
              ElementsAre("navigation: Load failed: Cannot connect (WebKitNetworkError 302)",
                          "navigation: The web content process terminated"));
}

}  // namespace
}  // namespace navora
