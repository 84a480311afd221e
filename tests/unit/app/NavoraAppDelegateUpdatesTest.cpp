#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* circles = "https://navora.example/circles";
constexpr const char* resumeEditingScript = "window.NavoraUpdateGuard?.resume()";
const AppcastItem release{"2.0", "2.0", std::nullopt, false};

class NavoraAppDelegateUpdatesTest : public AppDelegateTest {
 protected:
  using Button = UpdateBannerButton;

  UpdaterUserDriver& updater() { return *platform_.updater().driver; }
  FakeUpdateBannerView::Screen& banner() { return platform_.updateBanner(); }

  // Shows a release and records the choices.
  void offer() {
    updater().showUpdateFound(release, {},
                              [this](UserUpdateChoice choice) { choices_.push_back(choice); });
  }
  // Acts as the user installing the release, up to the step before the installation.
  void installUpTo(const std::optional<Url>& url) {
    launchShowing(url);
    offer();
    banner().press(Button::primary);
    updater().showReadyToInstallAndRelaunch(
        [this](UserUpdateChoice choice) { choices_.push_back(choice); });
  }

  std::vector<UserUpdateChoice> choices_;
};

TEST_F(NavoraAppDelegateUpdatesTest, AttachesTheBannerToTheWindow) {
  launch();
  EXPECT_EQ(banner().window, &window());
  EXPECT_TRUE(banner().hidden);
}

TEST_F(NavoraAppDelegateUpdatesTest, ChecksForUpdatesFromTheMenu) {
  launchShowing(testUrl(circles));
  platform_.application().choose(DelegateAction::checkForUpdates);
  EXPECT_THAT(log().take(),
              ElementsAre("window.makeKeyAndOrderFront", "application.activate", "updater.check"));
}

TEST_F(NavoraAppDelegateUpdatesTest, InstallsIfThePageHasNothingUnsaved) {
  installUpTo(testUrl(circles));
  EXPECT_THAT(choices_, ElementsAre(UserUpdateChoice::install));
  webView().finishEvaluation(Json("{}"));
  EXPECT_THAT(choices_, ElementsAre(UserUpdateChoice::install, UserUpdateChoice::install));
  EXPECT_TRUE(delegate_->restartPrepared());
}

TEST_F(NavoraAppDelegateUpdatesTest, ShowsThePagesReasonAgainstARestart) {
  installUpTo(testUrl(circles));
  webView().finishEvaluation(Json(R"({"reason": "Save the note"})"));
  EXPECT_EQ(banner().content.detail, "Save the note");
  EXPECT_FALSE(delegate_->restartPrepared());
  EXPECT_THAT(choices_, ElementsAre(UserUpdateChoice::install));
}

TEST_F(NavoraAppDelegateUpdatesTest, PageThatNeverAnswersLeavesTheUserTheChoice) {
  installUpTo(testUrl(circles));
  EXPECT_FALSE(banner().canPress(Button::primary));
  platform_.mainQueue().advance(UpdateGuard::patience);
  EXPECT_EQ(banner().content.detail,
            "Не удалось проверить незавершённый ввод. Попробуйте обновление ещё раз.");
  banner().press(Button::primary);
  webView().finishEvaluation(Json("{}"));
  webView().finishEvaluation(Json("{}"));
  EXPECT_THAT(choices_, ElementsAre(UserUpdateChoice::install, UserUpdateChoice::install));
}

TEST_F(NavoraAppDelegateUpdatesTest, WaitsForAPageThatIsLoading) {
  launch();
  webView().setUrl(testUrl(circles));
  webView().loading = true;
  std::optional<std::string> message;
  delegate_->prepareForUpdate(
      [&](std::optional<std::string> answer) { message = std::move(answer); });
  EXPECT_EQ(message, "Дождитесь загрузки страницы и продолжите обновление.");
}

TEST_F(NavoraAppDelegateUpdatesTest, ResumesThePageWhenTheRestartIsCancelled) {
  installUpTo(testUrl(circles));
  webView().finishEvaluation(Json("{}"));
  updater().dismissUpdateInstallation();
  EXPECT_FALSE(delegate_->restartPrepared());
  EXPECT_EQ(webView().scripts().back(), resumeEditingScript);
}

TEST_F(NavoraAppDelegateUpdatesTest, PostponesUntilTheUsersNextMidnight) {
  system().timeZone = "Europe/Berlin";
  system().time = dateFromSecondsSince1970(1'700'049'600);  // 2023-11-15 13:00 in Berlin
  launch();
  offer();
  banner().press(Button::close);
  EXPECT_THAT(choices_, ElementsAre(UserUpdateChoice::dismiss));
  const auto pending = platform_.userDefaults().value("navora.updateReminder.pending");
  ASSERT_TRUE(pending);
  EXPECT_EQ(numberMember(*pending, "deadline"), 1'700'049'600 + 11 * 3600);
}

TEST_F(NavoraAppDelegateUpdatesTest, FollowsAChangeOfLanguage) {
  locale_.setCatalogs(R"({"en": {"Обновить приложение": "Update"}})");
  locale_.prefer({"ru"});
  launchShowing(testUrl(circles));
  offer();
  EXPECT_EQ(banner().button(Button::primary).title, "Обновить приложение");
  webView().post("navoraLocale", R"({"requestedLocale": "en", "detectedLocale": null})",
                 {true, testUrl(circles)});
  EXPECT_EQ(banner().button(Button::primary).title, "Update");
}

TEST_F(NavoraAppDelegateUpdatesTest, UsesTheHostsWording) {
  launch();
  updater().showUpdateNotFound({}, [] {});
  EXPECT_EQ(banner().content.title, platform_.wording().upToDate);
}

TEST_F(NavoraAppDelegateUpdatesTest, LaunchesEvenIfTheUpdaterFailsToStart) {
  platform_.updater().startError = PlatformError{"test", 1, "broken"};
  launch();
  EXPECT_FALSE(banner().hidden);
  EXPECT_TRUE(window().isVisible());
  EXPECT_THAT(system().logged, ElementsAre("Navora updater: broken"));
}

}  // namespace
}  // namespace navora
