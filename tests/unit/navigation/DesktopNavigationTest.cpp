#include "unit/navigation/DesktopNavigationTest.h"

#include <gmock/gmock.h>

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NavigationAction actionTo(std::string_view url) {
  NavigationAction action;
  action.url = testUrl(url);
  action.type = NavigationType::linkActivated;
  action.sourceFrame = mainFrame("https://navora.example/");
  action.targetFrame = mainFrame("https://navora.example/");
  action.request = std::make_shared<FakeRequest>(*action.url);
  return action;
}

TEST_F(DesktopNavigationTest, CancelsANavigationWithoutAUrl) {
  auto action = actionTo("https://navora.example/");
  action.url.reset();
  for (const bool download : {false, true}) {
    action.shouldPerformDownload = download;
    EXPECT_EQ(decide(action), NavigationPolicy::cancel);
  }
  action.targetFrame.reset();
  EXPECT_EQ(decide(action), NavigationPolicy::cancel);
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(DesktopNavigationTest, AllowsOtherSpellingsOfTheOrigin) {
  for (const char* url : {"https://navora.example", "https://navora.example:443/login",
                          "HTTPS://NAVORA.EXAMPLE/today?day=1#note"}) {
    EXPECT_EQ(decide(actionTo(url)), NavigationPolicy::allow) << url;
  }
}

TEST_F(DesktopNavigationTest, LoadsTheRequestOfANewWindowInTheSameView) {
  auto action = actionTo("https://navora.example/circles");
  action.targetFrame.reset();
  EXPECT_EQ(decide(action), NavigationPolicy::cancel);
  EXPECT_THAT(webView_.requestLoads(), ElementsAre(action.request.get()));
  EXPECT_THAT(log().take(), ElementsAre("webView.loadRequest https://navora.example/circles"));
}

TEST_F(DesktopNavigationTest, LoadsTheRequestOfANewWindowFromAnyFrame) {
  for (const FrameInfo& source : {subframe("https://navora.example/"), FrameInfo{}}) {
    auto action = actionTo("https://navora.example/circles");
    action.type = NavigationType::other;
    action.sourceFrame = source;
    action.targetFrame.reset();
    EXPECT_EQ(decide(action), NavigationPolicy::cancel);
  }
  EXPECT_THAT(webView_.requestLoads(), testing::SizeIs(2));
}

TEST_F(DesktopNavigationTest, AnswersBeforeItOpensALink) {
  const auto answer = [this](NavigationPolicy policy) {
    log().record(policy == NavigationPolicy::cancel ? "cancel" : "other");
  };
  navigation_->decidePolicyForAction(webView_, actionTo("https://remote.example/page"), answer);
  EXPECT_THAT(log().take(), ElementsAre("cancel", "workspace.open https://remote.example/page"));

  auto newWindow = actionTo("https://navora.example/circles");
  newWindow.targetFrame.reset();
  navigation_->decidePolicyForAction(webView_, newWindow, answer);
  EXPECT_THAT(log().take(),
              ElementsAre("cancel", "webView.loadRequest https://navora.example/circles"));
}

TEST_F(DesktopNavigationTest, HandsOverAnAddressAsTheEngineGaveIt) {
  const std::string address = "https://remote.example/a[]=1|2?p=100%#/#room";
  decide(actionTo(address));
  ASSERT_EQ(platform_.workspace().opened().size(), 1U);
  EXPECT_EQ(platform_.workspace().opened()[0].textAsParsed(), address);
}

TEST_F(DesktopNavigationTest, DownloadsMarkedLinksEvenWithoutATargetFrame) {
  auto action = actionTo("https://navora.example/export.zip");
  action.shouldPerformDownload = true;
  EXPECT_EQ(decide(action), NavigationPolicy::download);
  action.targetFrame.reset();
  EXPECT_EQ(decide(action), NavigationPolicy::download);
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(DesktopNavigationTest, NeverDownloadsFromAForeignOrigin) {
  auto action = actionTo("https://remote.example/export.zip");
  action.shouldPerformDownload = true;
  EXPECT_EQ(decide(action), NavigationPolicy::cancel);
}

struct ResponseCase {
  std::optional<std::string> url;
  bool canShow;
  NavigationPolicy policy;
};

class DesktopNavigationResponseTest : public DesktopNavigationTest,
                                      public testing::WithParamInterface<ResponseCase> {};

TEST_P(DesktopNavigationResponseTest, HasThisPolicy) {
  NavigationResponse response;
  if (GetParam().url) response.url = testUrl(*GetParam().url);
  response.canShowMimeType = GetParam().canShow;
  EXPECT_EQ(navigation_->decidePolicyForResponse(response), GetParam().policy);
}

INSTANTIATE_TEST_SUITE_P(
    Responses, DesktopNavigationResponseTest,
    testing::Values(ResponseCase{"https://navora.example/today", true, NavigationPolicy::allow},
                    ResponseCase{"https://navora.example/export.zip", false,
                                 NavigationPolicy::download},
                    ResponseCase{"https://navora.example:443/", true, NavigationPolicy::allow},
                    ResponseCase{"https://remote.example/", true, NavigationPolicy::cancel},
                    ResponseCase{"https://remote.example/a.zip", false, NavigationPolicy::cancel},
                    ResponseCase{"http://navora.example/", true, NavigationPolicy::cancel},
                    ResponseCase{"https://navora.example:444/", false, NavigationPolicy::cancel},
                    ResponseCase{"https://user@navora.example/", true, NavigationPolicy::cancel},
                    ResponseCase{"about:blank", true, NavigationPolicy::cancel},
                    ResponseCase{std::nullopt, true, NavigationPolicy::cancel},
                    ResponseCase{std::nullopt, false, NavigationPolicy::cancel}));

class DesktopNavigationCallbacksTest : public DesktopNavigationTest {
 protected:
  void SetUp() override {
    DesktopNavigationTest::SetUp();
    navigation_->onStart = [this] { calls_.push_back("start"); };
    navigation_->onLoad = [this] { calls_.push_back("load"); };
    navigation_->onFailure = [this](const PlatformError& error) { failures_.push_back(error); };
  }

  std::vector<std::string> calls_;
  std::vector<PlatformError> failures_;
};

TEST_F(DesktopNavigationCallbacksTest, ReportTheStartAndTheEndOfALoad) {
  navigation_->didStartProvisionalNavigation();
  navigation_->didFinishNavigation();
  EXPECT_THAT(calls_, ElementsAre("start", "load"));
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(DesktopNavigationCallbacksTest, ForwardAFailureUnchanged) {
  const PlatformError timedOut{"NSURLErrorDomain", -1001, "The request timed out."};
  navigation_->didFailNavigation(timedOut);
  EXPECT_THAT(failures_, ElementsAre(timedOut));
  EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(DesktopNavigationCallbacksTest, IgnoreACancelledLoadOfAnyDomain) {
  navigation_->didFailNavigation({"NSURLErrorDomain", -999, "cancelled"});
  navigation_->didFailNavigation({"Other", -999, ""});
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(DesktopNavigationCallbacksTest, ReportTheCodesNextToTheCancellation) {
  navigation_->didFailNavigation({"NSURLErrorDomain", -1000, ""});
  navigation_->didFailNavigation({"NSURLErrorDomain", -998, ""});
  navigation_->didFailNavigation({"NSURLErrorDomain", 999, ""});
  EXPECT_THAT(failures_, testing::SizeIs(3));
}

TEST_F(DesktopNavigationCallbacksTest, ReportACrashedPageAsTheApplicationsError) {
  navigation_->webContentProcessDidTerminate();
  EXPECT_THAT(failures_,
              ElementsAre(PlatformError{"Navora", 1, "Окно приложения нужно перезагрузить."}));
  EXPECT_THAT(log().take(), IsEmpty()) << "nothing is reloaded";
}

TEST_F(DesktopNavigationCallbacksTest, ReportACrashInTheCurrentLanguage) {
  locale_.setCatalogs(R"({"en": {"Окно приложения нужно перезагрузить.": "Reload the window."}})");
  DesktopLocale::requested = "en";
  navigation_->webContentProcessDidTerminate();
  EXPECT_EQ(failures_.front().localizedDescription, "Reload the window.");
}

TEST_F(DesktopNavigationCallbacksTest, AreOptional) {
  navigation_->onStart = nullptr;
  navigation_->onLoad = nullptr;
  navigation_->onFailure = nullptr;
  navigation_->didStartProvisionalNavigation();
  navigation_->didFinishNavigation();
  navigation_->didFailNavigation({"NSURLErrorDomain", -1009, ""});
  navigation_->webContentProcessDidTerminate();
  EXPECT_THAT(calls_, IsEmpty());
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(DesktopNavigationCallbacksTest, AreReadAtTheTimeOfTheEvent) {
  navigation_->didFinishNavigation();
  navigation_->onLoad = [this] { calls_.push_back("other"); };
  navigation_->didFinishNavigation();
  EXPECT_THAT(calls_, ElementsAre("load", "other"));
}

}  // namespace
}  // namespace navora
