#include <gmock/gmock.h>

#include "platform/NavigationDelegate.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Url circle = testUrl("https://navora.example/#circles?room=7");

// Clicks on notifications.
class NavoraAppDelegateOpeningTest : public AppDelegateTest {
 protected:
  void launchShowingPage(const char* url) {
    launchShowing(testUrl(url));
    forgetLoads_ = webView().loads().size();
    forgetScripts_ = webView().scripts().size();
  }

  std::vector<Url> loaded() {
    std::vector<Url> urls;
    for (std::size_t index = forgetLoads_; index < webView().loads().size(); ++index)
      urls.push_back(webView().loads()[index].url);
    return urls;
  }
  std::vector<std::string> scripts() {
    return {webView().scripts().begin() + static_cast<std::ptrdiff_t>(forgetScripts_),
            webView().scripts().end()};
  }
  void finishLoading(const char* url) {
    webView().setUrl(testUrl(url));
    forgetScripts_ = webView().scripts().size();
    webView().navigationDelegate()->didFinishNavigation();
  }

 private:
  std::size_t forgetLoads_ = 0;
  std::size_t forgetScripts_ = 0;
};

TEST_F(NavoraAppDelegateOpeningTest, LoadsAPageOtherThanTheRoot) {
  launchShowingPage("https://navora.example/");
  const Url page = testUrl("https://navora.example/circles/7?from=note");
  delegate_->openNotification(page);
  EXPECT_THAT(loaded(), ElementsAre(page));
  EXPECT_EQ(webView().loads().back().cachePolicy, CachePolicy::useProtocolCachePolicy);
  EXPECT_EQ(webView().loads().back().timeoutSeconds, 60);
  finishLoading("https://navora.example/");
  EXPECT_THAT(scripts(), IsEmpty());
}

TEST_F(NavoraAppDelegateOpeningTest, OnlySetsTheFragmentOfTheRootPage) {
  launchShowingPage("https://navora.example/");
  delegate_->openNotification(circle);
  EXPECT_THAT(loaded(), IsEmpty());
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr(R"(location.hash = ["circles?room=7"][0])")));
  EXPECT_THAT(log().take(), testing::Contains("application.activate"));
}

TEST_F(NavoraAppDelegateOpeningTest, UsesTodayWithoutAFragment) {
  launchShowingPage("https://navora.example/");
  delegate_->openNotification(testUrl("https://navora.example"));
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr(R"(["today"][0])")));
}

TEST_F(NavoraAppDelegateOpeningTest, LoadsTheRootPageFromAnotherPage) {
  launchShowingPage("https://navora.example/settings");
  delegate_->openNotification(circle);
  EXPECT_THAT(loaded(), ElementsAre(testUrl("https://navora.example")));
  EXPECT_THAT(scripts(), IsEmpty());
  finishLoading("https://navora.example/");
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr("circles?room=7")));
}

TEST_F(NavoraAppDelegateOpeningTest, WaitsUntilTheUserHasSignedIn) {
  launchShowingPage("https://navora.example/login");
  delegate_->openNotification(circle);
  EXPECT_THAT(loaded(), IsEmpty());
  EXPECT_THAT(scripts(), IsEmpty());
  finishLoading("https://navora.example/");
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr("circles?room=7")));
}

TEST_F(NavoraAppDelegateOpeningTest, LoadsTheLoginPageIfNoPageOfTheServiceIsShown) {
  launchShowingPage("https://remote.example/");
  delegate_->openNotification(circle);
  EXPECT_THAT(loaded(), ElementsAre(testUrl("https://navora.example/login")));
  finishLoading("https://navora.example/");
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr("circles?room=7")));
}

TEST_F(NavoraAppDelegateOpeningTest, DoesNothingWhileARestartIsPrepared) {
  launchShowingPage("https://navora.example/");
  prepareRestart();
  const auto before = scripts();
  delegate_->openNotification(circle);
  EXPECT_THAT(loaded(), IsEmpty());
  EXPECT_EQ(scripts(), before);
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateOpeningTest, UsesTheLaterOfTwo) {
  launchShowingPage("https://navora.example/login");
  delegate_->openNotification(testUrl("https://navora.example/#calendar"));
  delegate_->openNotification(circle);
  finishLoading("https://navora.example/");
  EXPECT_THAT(scripts(), ElementsAre(HasSubstr("circles?room=7")));
}

}  // namespace
}  // namespace navora
