#include <gmock/gmock.h>

#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* origin = "https://navora.example";
constexpr const char* subPage = "https://navora.example/circles?id=7#notes";
constexpr const char* foreignPage = "https://remote.example/";
const PlatformError unreachable{"NSURLErrorDomain", -1004, "Could not connect to the server."};

class NavoraAppDelegateReloadTest : public AppDelegateTest {
 protected:
  void failLoading() { webView().navigationDelegate()->didFailNavigation(unreachable); }

  WebRequest lastLoad() { return webView().loads().back(); }
};

TEST_F(NavoraAppDelegateReloadTest, ReloadsASubPageOfTheOriginBypassingTheCache) {
  launchShowing(testUrl(subPage));
  delegate_->reload();
  EXPECT_EQ(lastLoad(),
            (WebRequest{testUrl(subPage), CachePolicy::reloadIgnoringLocalCacheData, 60}));
}

TEST_F(NavoraAppDelegateReloadTest, LoadsTheOriginIfAForeignPageIsShown) {
  launchShowing(testUrl(foreignPage));
  delegate_->reload();
  EXPECT_EQ(lastLoad(),
            (WebRequest{testUrl(origin), CachePolicy::reloadIgnoringLocalCacheData, 60}));
}

TEST_F(NavoraAppDelegateReloadTest, LoadsTheOriginIfNoPageIsShown) {
  launchShowing(std::nullopt);
  delegate_->reload();
  EXPECT_EQ(lastLoad(),
            (WebRequest{testUrl(origin), CachePolicy::reloadIgnoringLocalCacheData, 60}));
}

TEST_F(NavoraAppDelegateReloadTest, TreatsAnotherPortAsForeign) {
  launchShowing(testUrl("https://navora.example:444/login"));
  delegate_->reload();
  EXPECT_EQ(lastLoad().url, testUrl(origin));
}

TEST_F(NavoraAppDelegateReloadTest, HidesTheOverlayBeforeItLoads) {
  launchShowing(testUrl(subPage));
  delegate_->reload();
  EXPECT_THAT(log().take(), ElementsAre("errorView.hide", "webView.load " + std::string(subPage)));
}

TEST_F(NavoraAppDelegateReloadTest, DoesNothingWhileARestartIsPrepared) {
  launchShowing(testUrl(subPage));
  failLoading();
  log().take();
  prepareRestart();
  errorView().clickRetry();
  EXPECT_THAT(log().take(), IsEmpty());
  EXPECT_FALSE(errorView().isHidden());
}

TEST_F(NavoraAppDelegateReloadTest, WorksAgainAfterTheRestartIsCancelled) {
  launchShowing(testUrl(subPage));
  EXPECT_FALSE(delegate_->restartPrepared());
  prepareRestart();
  EXPECT_TRUE(delegate_->restartPrepared());
  giveUpRestart();
  delegate_->reload();
  EXPECT_EQ(lastLoad().url, testUrl(subPage));
}

TEST_F(NavoraAppDelegateReloadTest, OpensTheShownPageOfTheOriginInTheBrowser) {
  launchShowing(testUrl(subPage));
  delegate_->openInBrowser();
  EXPECT_THAT(platform_.workspace().opened(), ElementsAre(testUrl(subPage)));
}

TEST_F(NavoraAppDelegateReloadTest, OpensTheOriginInTheBrowserIfAForeignPageIsShown) {
  launchShowing(testUrl(foreignPage));
  delegate_->openInBrowser();
  EXPECT_THAT(platform_.workspace().opened(), ElementsAre(testUrl(origin)));
}

TEST_F(NavoraAppDelegateReloadTest, OpensTheOriginInTheBrowserIfNoPageIsShown) {
  launchShowing(std::nullopt);
  delegate_->openInBrowser();
  EXPECT_THAT(platform_.workspace().opened(), ElementsAre(testUrl(origin)));
}

TEST_F(NavoraAppDelegateReloadTest, OpensTheBrowserEvenWhileARestartIsPrepared) {
  launchShowing(testUrl(subPage));
  prepareRestart();
  delegate_->openInBrowser();
  EXPECT_THAT(platform_.workspace().opened(), ElementsAre(testUrl(subPage)));
}

TEST_F(NavoraAppDelegateReloadTest, StartsWithTheOverlayHidden) {
  launch();
  EXPECT_TRUE(errorView().isHidden());
}

TEST_F(NavoraAppDelegateReloadTest, ShowsTheOverlayWithTheFailureTextWhenALoadFails) {
  launchShowing(testUrl(subPage));
  failLoading();
  EXPECT_THAT(log().take(), ElementsAre("errorView.setDetail", "errorView.show"));
  EXPECT_EQ(errorView().detail(),
            "Проверьте подключение к интернету и попробуйте ещё раз.\n"
            "Ваши записи остаются на сервере.");
}

TEST_F(NavoraAppDelegateReloadTest, ShowsTheOverlayWhenTheWebProcessTerminates) {
  launchShowing(testUrl(subPage));
  webView().navigationDelegate()->webContentProcessDidTerminate();
  EXPECT_FALSE(errorView().isHidden());
  EXPECT_THAT(webView().loads(), testing::SizeIs(1)) << "only the launch loads by itself";
}

TEST_F(NavoraAppDelegateReloadTest, KeepsTheOverlayHiddenWhenALoadIsCancelled) {
  launchShowing(testUrl(subPage));
  webView().navigationDelegate()->didFailNavigation({"NSURLErrorDomain", -999, "cancelled"});
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateReloadTest, HidesTheOverlayWhenANavigationStarts) {
  launch();
  failLoading();
  webView().navigationDelegate()->didStartProvisionalNavigation();
  EXPECT_TRUE(errorView().isHidden());
}

TEST_F(NavoraAppDelegateReloadTest, HidesTheOverlayWhenALoadFinishes) {
  launch();
  failLoading();
  webView().navigationDelegate()->didFinishNavigation();
  EXPECT_TRUE(errorView().isHidden());
}

TEST_F(NavoraAppDelegateReloadTest, ShowsTheOverlayAgainWheneverARetryFails) {
  launchShowing(testUrl(subPage));
  for (int attempt = 0; attempt < 3; ++attempt) {
    failLoading();
    EXPECT_FALSE(errorView().isHidden());
    errorView().clickRetry();
    EXPECT_TRUE(errorView().isHidden());
  }
  EXPECT_THAT(webView().loads(), testing::SizeIs(1 + 3));
}

TEST_F(NavoraAppDelegateReloadTest, RetriesThePageThatFailed) {
  launchShowing(testUrl(subPage));
  failLoading();
  errorView().clickRetry();
  EXPECT_EQ(lastLoad().url, testUrl(subPage));
}

TEST_F(NavoraAppDelegateReloadTest, OpensTheBrowserFromTheOverlayAndKeepsItShown) {
  launchShowing(testUrl(subPage));
  failLoading();
  log().take();
  errorView().clickOpenInBrowser();
  EXPECT_THAT(log().take(), ElementsAre("workspace.open " + std::string(subPage)));
  EXPECT_FALSE(errorView().isHidden());
}

}  // namespace
}  // namespace navora
