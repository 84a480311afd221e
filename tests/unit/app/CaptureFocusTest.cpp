#include <memory>

#include <gmock/gmock.h>

#include "app/CaptureFocus.h"
#include "fakes/FakePlatform.h"
#include "fakes/TestUrl.h"

namespace navora {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

constexpr std::chrono::milliseconds interval{250};

class CaptureFocusTest : public testing::Test {
 protected:
  CaptureFocusTest() { webView.setUrl(testUrl("https://navora.example/#today")); }

  void answer(const Json& value) { webView.finishEvaluation(value); }
  void expectFocus(bool expected) {
    if (expected) {
      EXPECT_THAT(platform.log().take(), Contains("window.makeContentViewFirstResponder"));
    } else {
      EXPECT_THAT(platform.log().take(), Not(Contains("window.makeContentViewFirstResponder")));
    }
  }

  FakePlatform platform;
  FakeMainWindowDelegate windowDelegate;
  FakeWebView webView{platform.log(), WebViewConfiguration{testUrl("https://navora.example/")}};
  FakeMainWindow window{platform.log(), {}, windowDelegate};
  CaptureFocus focus{webView, window, platform.mainQueue(), testUrl("https://navora.example/")};
};

TEST_F(CaptureFocusTest, DoesNothingIfNothingIsPending) {
  focus.start();
  EXPECT_THAT(webView.scripts(), IsEmpty());
}

TEST_F(CaptureFocusTest, MovesThePageToTheDestination) {
  focus.pendingDestination = testUrl("https://navora.example/#circles");
  focus.start();
  EXPECT_EQ(webView.scripts().back(),
            "(() => {\n  if (!document.querySelector('#capture-input')) return false;\n"
            "  location.hash = [\"circles\"][0]; return true;\n})()");
  answer(true);
  EXPECT_FALSE(focus.pendingDestination);
  expectFocus(true);
  platform.mainQueue().advance(std::chrono::minutes(1));
  EXPECT_EQ(webView.scripts().size(), 1U);
}

TEST_F(CaptureFocusTest, UsesTodayForADestinationWithoutAFragment) {
  focus.pendingDestination = testUrl("https://navora.example/");
  focus.start();
  EXPECT_THAT(webView.scripts().back(), testing::HasSubstr("location.hash = [\"today\"][0]"));
}

TEST_F(CaptureFocusTest, QuotesAnyFragment) {
  focus.pendingDestination = testUrl("https://navora.example/#a'b\"];alert(1)//");
  focus.start();
  EXPECT_THAT(webView.scripts().back(), testing::HasSubstr("[\"a'b%22%5D;alert(1)//\"][0]"));
}

TEST_F(CaptureFocusTest, FocusesThePagesOwnInput) {
  focus.capturePending = true;
  focus.start();
  EXPECT_EQ(webView.scripts().back(),
            "(() => {\n  location.hash = '#today';\n"
            "  const input = document.querySelector('#capture-input');\n"
            "  if (!input || !input.isContentEditable || input.getClientRects().length === 0) "
            "return false;\n"
            "  input.focus(); return document.activeElement === input;\n})()");
  answer(true);
  EXPECT_FALSE(focus.capturePending);
  expectFocus(true);
}

TEST_F(CaptureFocusTest, RetriesUntilThePageIsReady) {
  focus.capturePending = true;
  focus.start();
  for (const Json& value : {Json(false), Json(), Json(1), Json("true"), Json::array({true})}) {
    answer(value);
    platform.mainQueue().advance(interval - std::chrono::milliseconds(1));
    EXPECT_EQ(webView.evaluationsUnderWay(), 0U);
    platform.mainQueue().advance(std::chrono::milliseconds(1));
    EXPECT_EQ(webView.evaluationsUnderWay(), 1U);
  }
  webView.finishEvaluation(Unexpected(PlatformError{"js", 4, "thrown"}));
  platform.mainQueue().advance(interval);
  answer(true);
  EXPECT_FALSE(focus.capturePending);
}

TEST_F(CaptureFocusTest, StopsAfterFortyAttemptsAndStaysPending) {
  focus.capturePending = true;
  focus.start();
  for (int attempt = 0; attempt < 40; ++attempt) {
    ASSERT_EQ(webView.evaluationsUnderWay(), 1U);
    answer(false);
    platform.mainQueue().advance(interval);
  }
  platform.mainQueue().advance(std::chrono::hours(1));
  EXPECT_EQ(webView.scripts().size(), 40U);
  EXPECT_TRUE(focus.capturePending);
  expectFocus(false);
  focus.start();
  EXPECT_EQ(webView.scripts().size(), 41U);
}

TEST_F(CaptureFocusTest, WaitsForTheRootPageOfTheService) {
  focus.capturePending = true;
  for (const char* url : {"https://navora.example/login", "https://navora.example",
                          "https://remote.example/", "http://navora.example/"}) {
    webView.setUrl(testUrl(url));
    focus.start();
    EXPECT_THAT(webView.scripts(), IsEmpty()) << url;
  }
  webView.setUrl(std::nullopt);
  focus.start();
  EXPECT_THAT(webView.scripts(), IsEmpty());
}

TEST_F(CaptureFocusTest, StopsIfAnotherPageIsShownMeanwhile) {
  focus.capturePending = true;
  focus.start();
  answer(false);
  webView.setUrl(testUrl("https://navora.example/login"));
  platform.mainQueue().advance(interval);
  EXPECT_EQ(webView.scripts().size(), 1U);
  EXPECT_EQ(platform.mainQueue().pendingCount(), 0U);
}

TEST_F(CaptureFocusTest, StopsAnOlderRunWhenANewerOneStarts) {
  focus.capturePending = true;
  focus.start();
  answer(false);
  focus.start();
  EXPECT_EQ(webView.scripts().size(), 2U);
  platform.mainQueue().advance(interval);
  EXPECT_EQ(webView.scripts().size(), 2U);
}

TEST_F(CaptureFocusTest, IgnoresAReplyToAnOlderRun) {
  focus.capturePending = true;
  focus.start();
  focus.start();
  answer(true);
  EXPECT_TRUE(focus.capturePending);
  expectFocus(false);
  answer(true);
  EXPECT_FALSE(focus.capturePending);
}

}  // namespace
}  // namespace navora
