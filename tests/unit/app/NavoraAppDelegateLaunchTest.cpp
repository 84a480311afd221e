#include <gmock/gmock.h>

#include "app/PageScripts.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class NavoraAppDelegateLaunchTest : public AppDelegateTest {};

TEST_F(NavoraAppDelegateLaunchTest, CreatesNothingBeforeTheApplicationHasLaunched) {
  create();
  EXPECT_THAT(log().events(), IsEmpty());
}

TEST_F(NavoraAppDelegateLaunchTest, StartsUpInOrder) {
  launch();
  EXPECT_THAT(
      log().events(),
      ElementsAre("application.setMainMenu", "window.make", "webView.make",
                  "webView.setNavigationDelegate", "webView.setPageDialogDelegate",
                  "window.setContentView", "errorView.make", "system.observeTimeZoneChange",
                  "system.observeWake", "panel.make", "statusItem.make", "hotKeys.addLocalMonitor",
                  "hotKeys.installEventHandler", "hotKeys.register", "updater.make",
                  "updater.observeCanCheck", "updater.observeInProgress", "updater.start",
                  "webView.load https://navora.example/login", "window.makeKeyAndOrderFront",
                  "application.activate"));
}

TEST_F(NavoraAppDelegateLaunchTest, DescribesTheWindow) {
  launch();
  EXPECT_EQ(window().description(),
            (MainWindowDescription{"Навора", {1240, 820}, {760, 560}, "NavoraMainWindow"}));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(NavoraAppDelegateLaunchTest, TitlesTheWindowInThePreferredLanguage) {
  locale_.setCatalogs(R"({"en": {"Навора": "Navora"}})");
  locale_.prefer({"en-GB"});
  launch();
  EXPECT_EQ(window().title(), "Navora");
}

TEST_F(NavoraAppDelegateLaunchTest, FillsTheWindowWithTheViewOfTheOrigin) {
  launch();
  EXPECT_EQ(window().contentView().get(), &webView());
  EXPECT_EQ(webView().configuration().origin, testUrl("https://navora.example"));
}

TEST_F(NavoraAppDelegateLaunchTest, RegistersItselfForTheFourMessagesOfThePage) {
  launch();
  EXPECT_THAT(webView().configuration().messageHandlerNames,
              ElementsAre("navoraLocale", "navoraCaptureAppearance", "navoraTimeZoneDetection",
                          "navoraNotifications"));
  EXPECT_EQ(webView().configuration().messageHandler, delegate_.get());
}

TEST_F(NavoraAppDelegateLaunchTest, InjectsThePageScriptsOfItsOriginZoneAndResources) {
  system().environment["NAVORA_URL"] = "http://localhost:3000/app";
  system().timeZone = "Asia/Tokyo";
  platform_.resources().put("CaptureAppearance", "js", "appearance();");
  platform_.resources().put("RestartGuard", "js", "guard();");
  launch();
  EXPECT_EQ(webView().configuration().userScripts,
            PageScripts::userScripts(testUrl("http://localhost:3000/"), "Asia/Tokyo",
                                     platform_.resources()));
  EXPECT_EQ(webView().configuration().userScripts.size(), 4U);
}

TEST_F(NavoraAppDelegateLaunchTest, CreatesTheWindowWithoutTheResourceScripts) {
  launch();
  EXPECT_EQ(webView().configuration().userScripts.size(), 2U);
  EXPECT_TRUE(window().isVisible());
}

TEST_F(NavoraAppDelegateLaunchTest, InstallsOneDelegateForNavigationAndDialogs) {
  launch();
  const auto* navigation = dynamic_cast<DesktopNavigation*>(webView().navigationDelegate());
  ASSERT_NE(navigation, nullptr);
  EXPECT_EQ(dynamic_cast<DesktopNavigation*>(webView().pageDialogDelegate()), navigation);
  EXPECT_EQ(navigation->window.lock().get(), &window());
}

TEST_F(NavoraAppDelegateLaunchTest, LoadsTheLoginPageWithTheProtocolsCachePolicyAndATimeout) {
  launch();
  EXPECT_THAT(webView().loads(), ElementsAre(WebRequest{testUrl("https://navora.example/login"),
                                                        CachePolicy::useProtocolCachePolicy, 60}));
}

struct ConfiguredOrigin {
  std::string value;
  std::string login;
};

class NavoraAppDelegateOriginTest : public AppDelegateTest,
                                    public testing::WithParamInterface<ConfiguredOrigin> {};

TEST_P(NavoraAppDelegateOriginTest, LoadsTheLoginPageOfTheConfiguredOrigin) {
  system().environment["NAVORA_URL"] = GetParam().value;
  launch();
  EXPECT_EQ(webView().loads().front().url.string(), GetParam().login);
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, NavoraAppDelegateOriginTest,
    testing::Values(
        ConfiguredOrigin{"http://127.0.0.1:8878/test?x=1#today", "http://127.0.0.1:8878/login"},
        ConfiguredOrigin{"http://[::1]:8080/", "http://[::1]:8080/login"},
        ConfiguredOrigin{"HTTP://LOCALHOST:3000/app", "HTTP://LOCALHOST:3000/login"},
        ConfiguredOrigin{"https://preview.example", "https://preview.example/login"},
        ConfiguredOrigin{"https://preview.example:443", "https://preview.example:443/login"}));

INSTANTIATE_TEST_SUITE_P(
    Refused, NavoraAppDelegateOriginTest,
    testing::Values(
        ConfiguredOrigin{"", "https://navora.example/login"},
        ConfiguredOrigin{"preview.example", "https://navora.example/login"},
        ConfiguredOrigin{"http://192.168.1.5/", "https://navora.example/login"},
        ConfiguredOrigin{"https://user:@preview.example", "https://navora.example/login"},
        ConfiguredOrigin{"file:///tmp/index.html", "https://navora.example/login"},
        ConfiguredOrigin{"https://preview.example:99999", "https://navora.example/login"}));

TEST_F(NavoraAppDelegateLaunchTest, KeepsTheOriginThatItWasCreatedWith) {
  system().environment["NAVORA_URL"] = "https://preview.example";
  create();
  system().environment["NAVORA_URL"] = "https://other.example";
  delegate_->applicationDidFinishLaunching();
  EXPECT_EQ(webView().loads().front().url.string(), "https://preview.example/login");
}

TEST_F(NavoraAppDelegateLaunchTest, HidesTheWindowInsteadOfClosingIt) {
  launch();
  log().take();
  EXPECT_FALSE(delegate_->windowShouldClose());
  EXPECT_THAT(log().take(), ElementsAre("window.orderOut"));
  EXPECT_FALSE(window().isVisible());
}

TEST_F(NavoraAppDelegateLaunchTest, KeepsRunningWithoutAWindow) {
  launch();
  EXPECT_FALSE(delegate_->applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(NavoraAppDelegateLaunchTest, ShowsTheHiddenWindowWhenReopened) {
  launch();
  window().clickClose();
  log().take();
  EXPECT_TRUE(delegate_->applicationShouldHandleReopen(false));
  EXPECT_THAT(log().take(), ElementsAre("window.makeKeyAndOrderFront", "application.activate"));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(NavoraAppDelegateLaunchTest, DeminiaturizesTheWindowFirstWhenReopened) {
  launch();
  window().miniaturize();
  log().take();
  EXPECT_TRUE(delegate_->applicationShouldHandleReopen(true));
  EXPECT_THAT(log().take(), ElementsAre("window.deminiaturize", "window.makeKeyAndOrderFront",
                                        "application.activate"));
  EXPECT_FALSE(window().isMiniaturized());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(NavoraAppDelegateLaunchTest, BringsAVisibleWindowToTheFront) {
  launch();
  log().take();
  EXPECT_TRUE(delegate_->applicationShouldHandleReopen(true));
  EXPECT_THAT(log().take(), ElementsAre("window.makeKeyAndOrderFront", "application.activate"));
}

TEST_F(NavoraAppDelegateLaunchTest, RemovesItsDelegatesFromAViewThatOutlivesIt) {
  launch();
  const auto view = window().contentView();
  auto& fake = webView();
  delegate_.reset();
  EXPECT_EQ(fake.navigationDelegate(), nullptr);
  EXPECT_EQ(fake.pageDialogDelegate(), nullptr);
}

TEST_F(NavoraAppDelegateLaunchTest, CanBeDestroyedWithoutHavingLaunched) {
  create();
  delegate_.reset();
  EXPECT_THAT(log().events(), IsEmpty());
}

TEST_F(NavoraAppDelegateLaunchTest, TerminatesWithoutTouchingTheWindow) {
  launch();
  log().take();
  delegate_->applicationWillTerminate();
  EXPECT_TRUE(window().isVisible());
  EXPECT_THAT(log().take(), Each(StartsWith("hotKeys.")));
}

using NavoraAppDelegateLaunchDeathTest = NavoraAppDelegateLaunchTest;

TEST_F(NavoraAppDelegateLaunchDeathTest, AbortsIfTheWindowToShowIsMissing) {
  create();
  EXPECT_DEATH(delegate_->showWindow(), "Fatal error: The main window is missing \\(App:[0-9]+\\)");
}

}  // namespace
}  // namespace navora
