#include <gmock/gmock.h>

#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* catalogs = R"({
  "en": {
    "Навора": "Navora",
    "Навора пока недоступна": "Navora is unavailable",
    "Проверьте подключение к интернету и попробуйте ещё раз.\nВаши записи остаются на сервере.":
      "Check your connection and try again.\nYour notes stay on the server."
  },
  "de": {"Навора": "Navora-DE"}
})";

class NavoraAppDelegateLocaleTest : public AppDelegateTest {
 protected:
  void SetUp() override {
    locale_.setCatalogs(catalogs);
    launchShowing(testUrl(home));
  }

  void post(const std::string& body) { webView().post("navoraLocale", body, mainFrame(home)); }
};

TEST_F(NavoraAppDelegateLocaleTest, StoresBothValuesOfAValidMessage) {
  post(R"({"requestedLocale": "pt-BR", "detectedLocale": "fr"})");
  EXPECT_EQ(DesktopLocale::requested, "pt-BR");
  EXPECT_EQ(DesktopLocale::detected, "fr");
}

TEST_F(NavoraAppDelegateLocaleTest, ClearsTheDetectedLanguageIfAMessageHasNone) {
  post(R"({"requestedLocale": "system", "detectedLocale": "fr"})");
  post(R"({"requestedLocale": "system", "detectedLocale": null})");
  EXPECT_EQ(DesktopLocale::detected, std::nullopt);
}

TEST_F(NavoraAppDelegateLocaleTest, IgnoresAnInvalidMessageAsAWhole) {
  post(R"({"requestedLocale": "en", "detectedLocale": "xx"})");
  post(R"({"requestedLocale": "pt-PT"})");
  post(R"("en")");
  EXPECT_EQ(DesktopLocale::requested, "system");
  EXPECT_EQ(DesktopLocale::detected, std::nullopt);
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateLocaleTest, IgnoresASubframeAndAForeignPage) {
  const std::string body = R"({"requestedLocale": "en"})";
  webView().post("navoraLocale", body, subframe(home));
  webView().post("navoraLocale", body, mainFrame("https://remote.example/"));
  EXPECT_EQ(DesktopLocale::requested, "system");
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateLocaleTest, RebuildsTheInterfaceInOrder) {
  post(R"({"requestedLocale": "en"})");
  EXPECT_THAT(log().take(),
              ElementsAre("window.setTitle Navora", "application.setMainMenu", "errorView.remove",
                          "errorView.make", "errorView.hide", "errorView.setDetail",
                          "statusItem.remove", "statusItem.make"));
}

TEST_F(NavoraAppDelegateLocaleTest, RebuildsNothingWhenTheLanguageStaysTheSame) {
  post(R"({"requestedLocale": "ru"})");
  post(R"({"requestedLocale": "system", "detectedLocale": "ru"})");
  EXPECT_THAT(log().take(), IsEmpty());
  post(R"({"requestedLocale": "en"})");
  log().take();
  post(R"({"requestedLocale": "en", "detectedLocale": "fr"})");
  EXPECT_THAT(log().take(), IsEmpty());
  EXPECT_EQ(DesktopLocale::detected, "fr") << "stored all the same";
}

TEST_F(NavoraAppDelegateLocaleTest, RebuildsAtEveryChange) {
  post(R"({"requestedLocale": "en"})");
  EXPECT_EQ(window().title(), "Navora");
  post(R"({"requestedLocale": "de"})");
  EXPECT_EQ(window().title(), "Navora-DE");
  post(R"({"requestedLocale": "system"})");
  EXPECT_EQ(window().title(), "Навора");
}

TEST_F(NavoraAppDelegateLocaleTest, UsesTheDetectedLanguageIfTheSystemPrefersNone) {
  post(R"({"requestedLocale": "system", "detectedLocale": "en"})");
  EXPECT_EQ(window().title(), "Navora");
}

// A change of the system's languages takes effect with the page's next report.
TEST_F(NavoraAppDelegateLocaleTest, FollowsASystemLanguageThatChangedSinceTheLaunch) {
  locale_.prefer({"en-GB"});
  post(R"({"requestedLocale": "system"})");
  EXPECT_EQ(window().title(), "Navora");
}

TEST_F(NavoraAppDelegateLocaleTest, KeepsAHiddenOverlayHidden) {
  post(R"({"requestedLocale": "en"})");
  EXPECT_TRUE(errorView().isHidden());
  EXPECT_THAT(*window().overlays(), testing::SizeIs(1));
}

TEST_F(NavoraAppDelegateLocaleTest, KeepsAShownOverlayShownWithTheFailureTextInTheNewLanguage) {
  webView().navigationDelegate()->didFailNavigation({"NSURLErrorDomain", -1009, "offline"});
  post(R"({"requestedLocale": "en"})");
  EXPECT_FALSE(errorView().isHidden());
  EXPECT_EQ(errorView().description().title, "Navora is unavailable");
  EXPECT_EQ(errorView().detail(),
            "Check your connection and try again.\nYour notes stay on the server.");
  EXPECT_THAT(*window().overlays(), testing::SizeIs(1));
}

TEST_F(NavoraAppDelegateLocaleTest, ConnectsTheNewOverlayToRetriesAndFailures) {
  post(R"({"requestedLocale": "en"})");
  webView().navigationDelegate()->didFailNavigation({"NSURLErrorDomain", -1009, "offline"});
  EXPECT_FALSE(errorView().isHidden());
  errorView().clickRetry();
  EXPECT_TRUE(errorView().isHidden());
  EXPECT_EQ(webView().loads().back().url, testUrl(home));
}

}  // namespace
}  // namespace navora
