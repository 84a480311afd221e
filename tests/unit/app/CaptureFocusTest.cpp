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
  CaptureFocusTest() { webView_.setUrl(testUrl("https://navora.example/#today")); }

  void answer(const Json& value) { webView_.finishEvaluation(value); }
  void expectFocus(bool expected) {
    if (expected) {
      EXPECT_THAT(platform_.log().take(), Contains("window.makeContentViewFirstResponder"));
    } else {
      EXPECT_THAT(platform_.log().take(), Not(Contains("window.makeContentViewFirstResponder")));
    }
  }

  FakePlatform platform_;
  FakeMainWindowDelegate windowDelegate_;
  FakeWebView webView_{platform_.log(), WebViewConfiguration{testUrl("https://navora.example/")}};
  FakeMainWindow window_{platform_.log(), {}, windowDelegate_};
  CaptureFocus focus_{webView_, window_, platform_.mainQueue(), testUrl("https://navora.example/")};
};

TEST_F(CaptureFocusTest, DoesNothingIfNothingIsPending) {
  focus_.start();
  EXPECT_THAT(webView_.scripts(), IsEmpty());
}

TEST_F(CaptureFocusTest, MovesThePageToTheDestination) {
  focus_.pendingDestination = testUrl("https://navora.example/#circles");
  focus_.start();
  EXPECT_EQ(webView_.scripts().back(),
            "(() => {\n  if (!document.querySelector('#capture-input')) return false;\n"
            "  location.hash = [\"circles\"][0]; return true;\n})()");
  answer(true);
  EXPECT_FALSE(focus_.pendingDestination);
  expectFocus(true);
  platform_.mainQueue().advance(std::chrono::minutes(1));
  EXPECT_EQ(webView_.scripts().size(), 1U);
}

TEST_F(CaptureFocusTest, UsesTodayForADestinationWithoutAFragment) {
  focus_.pendingDestination = testUrl("https://navora.example/");
  focus_.start();
  EXPECT_THAT(webView_.scripts().back(), testing::HasSubstr("location.hash = [\"today\"][0]"));
}

TEST_F(CaptureFocusTest, QuotesAnyFragment) {
  focus_.pendingDestination = testUrl("https://navora.example/#a'b\"];alert(1)//");
  focus_.start();
  EXPECT_THAT(webView_.scripts().back(), testing::HasSubstr("[\"a'b%22%5D;alert(1)//\"][0]"));
}

TEST_F(CaptureFocusTest, FocusesThePagesOwnInput) {
  focus_.capturePending = true;
  focus_.start();
  EXPECT_EQ(webView_.scripts().back(),
            "(() => {\n  location.hash = '#today';\n"
            "  const input = document.querySelector('#capture-input');\n"
            "  if (!input || !input.isContentEditable || input.getClientRects().length === 0) "
            "return false;\n"
            "  input.focus(); return document.activeElement === input;\n})()");
  answer(true);
  EXPECT_FALSE(focus_.capturePending);
  expectFocus(true);
}

TEST_F(CaptureFocusTest, RetriesUntilThePageIsReady) {
  focus_.capturePending = true;
  focus_.start();
  for (const Json& value : {Json(false), Json(), Json(1), Json("true"), Json::array({true})}) {
    answer(value);
    platform_.mainQueue().advance(interval - std::chrono::milliseconds(1));
    EXPECT_EQ(webView_.evaluationsUnderWay(), 0U);
    platform_.mainQueue().advance(std::chrono::milliseconds(1));
    EXPECT_EQ(webView_.evaluationsUnderWay(), 1U);
  }
  webView_.finishEvaluation(Unexpected(PlatformError{"js", 4, "thrown"}));
  platform_.mainQueue().advance(interval);
  answer(true);
  EXPECT_FALSE(focus_.capturePending);
}

TEST_F(CaptureFocusTest, StopsAfterFortyAttemptsAndStaysPending) {
  focus_.capturePending = true;
  focus_.start();
  for (int attempt = 0; attempt < 40; ++attempt) {
    ASSERT_EQ(webView_.evaluationsUnderWay(), 1U);
    answer(false);
    platform_.mainQueue().advance(interval);
  }
  platform_.mainQueue().advance(std::chrono::hours(1));
  EXPECT_EQ(webView_.scripts().size(), 40U);
  EXPECT_TRUE(focus_.capturePending);
  expectFocus(false);
  focus_.start();
  EXPECT_EQ(webView_.scripts().size(), 41U);
}

TEST_F(CaptureFocusTest, WaitsForTheRootPageOfTheService) {
  focus_.capturePending = true;
  for (const char* url : {"https://navora.example/login", "https://navora.example",
                          "https://remote.example/", "http://navora.example/"}) {
    webView_.setUrl(testUrl(url));
    focus_.start();
    EXPECT_THAT(webView_.scripts(), IsEmpty()) << url;
  }
  webView_.setUrl(std::nullopt);
  focus_.start();
  EXPECT_THAT(webView_.scripts(), IsEmpty());
}

TEST_F(CaptureFocusTest, StopsIfAnotherPageIsShownMeanwhile) {
  focus_.capturePending = true;
  focus_.start();
  answer(false);
  webView_.setUrl(testUrl("https://navora.example/login"));
  platform_.mainQueue().advance(interval);
  EXPECT_EQ(webView_.scripts().size(), 1U);
  EXPECT_EQ(platform_.mainQueue().pendingCount(), 0U);
}

TEST_F(CaptureFocusTest, StopsAnOlderRunWhenANewerOneStarts) {
  focus_.capturePending = true;
  focus_.start();
  answer(false);
  focus_.start();
  EXPECT_EQ(webView_.scripts().size(), 2U);
  platform_.mainQueue().advance(interval);
  EXPECT_EQ(webView_.scripts().size(), 2U);
}

TEST_F(CaptureFocusTest, IgnoresAReplyToAnOlderRun) {
  focus_.capturePending = true;
  focus_.start();
  focus_.start();
  answer(true);
  EXPECT_TRUE(focus_.capturePending);
  expectFocus(false);
  answer(true);
  EXPECT_FALSE(focus_.capturePending);
}

}  // namespace
}  // namespace navora
