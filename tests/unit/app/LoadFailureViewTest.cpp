#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/LoadFailureView.h"
#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"

namespace navora {
namespace {

using testing::ElementsAre;

constexpr const char* failureText =
    "Проверьте подключение к интернету и попробуйте ещё раз.\nВаши записи остаются на сервере.";

class LoadFailureViewTest : public testing::Test {
 protected:
  FakeErrorView& overlay() { return platform_.errorView(); }

  LocaleScope locale_;
  FakePlatform platform_;
  FakeMainWindowDelegate windowDelegate_;
  std::shared_ptr<MainWindow> window_ = platform_.makeMainWindow({}, windowDelegate_);
  int retries_ = 0;
  int browserRequests_ = 0;
  LoadFailureView view_{[this](const ErrorViewDescription& description) {
                          return platform_.makeErrorView(*window_, description);
                        },
                        {[this] { ++retries_; }, [this] { ++browserRequests_; }}};
};

TEST_F(LoadFailureViewTest, IsCreatedHiddenWithItsTexts) {
  EXPECT_TRUE(overlay().isHidden());
  EXPECT_EQ(overlay().description().title, "Навора пока недоступна");
  EXPECT_EQ(overlay().detail(), "Проверьте подключение к интернету.");
  EXPECT_EQ(overlay().description().retryTitle, "Попробовать снова");
  EXPECT_EQ(overlay().description().browserTitle, "Открыть в браузере");
}

TEST_F(LoadFailureViewTest, SetsTheFailureTextBeforeItShows) {
  platform_.log().take();
  view_.show();
  EXPECT_THAT(platform_.log().take(), ElementsAre("errorView.setDetail", "errorView.show"));
  EXPECT_EQ(overlay().detail(), failureText);
}

TEST_F(LoadFailureViewTest, Hides) {
  view_.show();
  view_.hide();
  EXPECT_TRUE(overlay().isHidden());
}

TEST_F(LoadFailureViewTest, ForwardsItsButtons) {
  overlay().clickRetry();
  overlay().clickRetry();
  overlay().clickOpenInBrowser();
  EXPECT_EQ(retries_, 2);
  EXPECT_EQ(browserRequests_, 1);
}

TEST_F(LoadFailureViewTest, RemovesTheOldOverlayBeforeCreatingTheNewOne) {
  platform_.log().take();
  view_.refreshLocale();
  EXPECT_THAT(platform_.log().take(), ElementsAre("errorView.remove", "errorView.make",
                                                  "errorView.hide", "errorView.setDetail"));
}

TEST_F(LoadFailureViewTest, StaysHiddenInANewLanguageWithTheGeneralText) {
  view_.refreshLocale();
  EXPECT_TRUE(overlay().isHidden());
  EXPECT_EQ(overlay().detail(), failureText);
}

TEST_F(LoadFailureViewTest, StaysShownInANewLanguage) {
  view_.show();
  locale_.setCatalogs(R"({"en": {"Навора пока недоступна": "Navora is unavailable",
                                 "Попробовать снова": "Try Again",
                                 "Открыть в браузере": "Open in Browser"}})");
  locale_.prefer({"en"});
  view_.refreshLocale();
  EXPECT_FALSE(overlay().isHidden());
  EXPECT_EQ(overlay().description().title, "Navora is unavailable");
  EXPECT_EQ(overlay().description().retryTitle, "Try Again");
  EXPECT_EQ(overlay().description().browserTitle, "Open in Browser");
  EXPECT_EQ(overlay().detail(), failureText) << "has no translation here";
}

TEST_F(LoadFailureViewTest, ForwardsTheButtonsOfTheNewOverlay) {
  view_.refreshLocale();
  overlay().clickRetry();
  overlay().clickOpenInBrowser();
  EXPECT_EQ(retries_, 1);
  EXPECT_EQ(browserRequests_, 1);
}

TEST_F(LoadFailureViewTest, HasTheExpectedMetrics) {
  EXPECT_EQ(ErrorViewDescription::titleFontSize, 24);
  EXPECT_EQ(ErrorViewDescription::stackSpacing, 18);
  EXPECT_EQ(ErrorViewDescription::maximumStackWidth, 480);
}

}  // namespace
}  // namespace navora
