#include "unit/updates/DesktopUpdatesTest.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Delay = UpdateReminderPolicy::Delay;

class DesktopUpdatesOfferTest : public DesktopUpdatesTest {
 protected:
  DesktopUpdatesOfferTest() { start(); }

  Json ignored() const {
    return defaults.value("navora.updateReminder.ignoredVersion").value_or(Json());
  }
};

TEST_F(DesktopUpdatesOfferTest, OffersTheVersionOfABackgroundCheck) {
  find(item());
  EXPECT_EQ(heading(), "Доступна Навора 2.0 (display)");
  EXPECT_FALSE(screen.hidden);
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(DesktopUpdatesOfferTest, DoesNotOfferAnIgnoredVersion) {
  policy.ignore("2.0");
  find(item());
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, OffersAnIgnoredVersionInTheUsersOwnCheck) {
  policy.ignore("2.0");
  find(item(), true);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_EQ(heading(), "Доступна Навора 2.0 (display)");
  EXPECT_FALSE(screen.hidden);
  EXPECT_EQ(ignored(), "2.0");
}

TEST_F(DesktopUpdatesOfferTest, DoesNotOfferAPostponedVersionBeforeItsDeadline) {
  policy.postpone("2.0", Delay::hour);
  queue.advance(59min);
  find(item());
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_TRUE(screen.hidden);
  EXPECT_TRUE(policy.pending());
  queue.advance(1min);
  find(item());
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, HidesTheBannerWhenTheVersionIsNotOffered) {
  find(item());
  policy.ignore("2.0");
  find(item());
  EXPECT_TRUE(screen.hidden);
  for (const auto which : {Button::primary, Button::secondary, Button::tertiary, Button::close})
    screen.delegate->bannerButtonPressed(which);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
}

TEST_F(DesktopUpdatesOfferTest, RemovesThePostponementOfAnOlderVersionAndItsTimer) {
  policy.postpone("1.9", Delay::hour);
  make();
  start();
  EXPECT_EQ(queue.pendingCount(), 1u);
  find(item());
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST_F(DesktopUpdatesOfferTest, InstallsTheVersionThatTheUserChooses) {
  policy.postpone("2.0", Delay::hour);
  defaults.setValue("navora.updateReminder.ignoredVersion", "2.0");
  find(item(), true);
  EXPECT_EQ(queue.pendingCount(), 1u);
  press(Button::primary);
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_EQ(ignored(), Json());
  EXPECT_EQ(queue.pendingCount(), 0u);
  EXPECT_FALSE(screen.hidden);
  EXPECT_TRUE(screen.button(Button::primary).visible);
  EXPECT_FALSE(screen.button(Button::primary).enabled);
}

TEST_F(DesktopUpdatesOfferTest, PostponesByAnHourAndChecksAgain) {
  find(item());
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_TRUE(screen.hidden);
  EXPECT_EQ(policy.pending(), (UpdateReminderPolicy::Pending{"2.0", launch + 1h}));
  queue.advance(1h);
  EXPECT_THAT(log.take(), ElementsAre("updater.checkInBackground"));
  find(item());
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, PostponesUntilTomorrowWhenTheBannerIsClosed) {
  find(item());
  press(Button::close);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_TRUE(screen.hidden);
  // The launch is at 2027-01-15 08:00 UTC.
  EXPECT_EQ(policy.pending(), (UpdateReminderPolicy::Pending{"2.0", launch + 16h}));
  EXPECT_EQ(queue.pendingCount(), 1u);
}

TEST_F(DesktopUpdatesOfferTest, IgnoresAVersionPermanently) {
  find(item());
  press(Button::tertiary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_TRUE(screen.hidden);
  EXPECT_EQ(ignored(), "2.0");
  EXPECT_EQ(queue.pendingCount(), 0u);
  find(item("2.1"));
  EXPECT_EQ(heading(), "Доступна Навора 2.1 (display)");
}

TEST_F(DesktopUpdatesOfferTest, TreatsTwoQuickPressesAsOne) {
  find(item());
  press(Button::secondary);
  screen.delegate->bannerButtonPressed(Button::secondary);
  screen.delegate->bannerButtonPressed(Button::close);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_EQ(policy.pending()->deadline, launch + 1h);
}

TEST_F(DesktopUpdatesOfferTest, IgnoresAPressForAnEarlierState) {
  find(item());
  driver().showDownloadDidStartExtractingUpdate();
  screen.delegate->bannerButtonPressed(Button::secondary);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, AnswersOnlyTheUpdateThatIsShown) {
  find(item("2.0"));
  find(item("2.1"));
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  EXPECT_EQ(policy.pending()->version, "2.1");
}

TEST_F(DesktopUpdatesOfferTest, OpensThePageAboutAVersionThatCannotBeInstalled) {
  find(information("https://navora.example/releases/2.0"));
  EXPECT_EQ(heading(), "Доступна новая версия");
  press(Button::primary);
  EXPECT_THAT(log.take(),
              ElementsAre("workspace.open https://navora.example/releases/2.0", "reply dismiss"));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, OpensOnlyHttpsPages) {
  for (const char* url : {"http://navora.example/", "file:///etc/passwd", "HTTPS://navora.example/",
                          "releases", ""}) {
    find(information(url));
    press(Button::primary);
    EXPECT_THAT(log.take(), ElementsAre("reply dismiss")) << url;
    EXPECT_TRUE(screen.hidden) << url;
  }
}

TEST_F(DesktopUpdatesOfferTest, LeavesAVersionThatCannotBeInstalledForLater) {
  find(information("https://navora.example/"));
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
}

TEST_F(DesktopUpdatesOfferTest, ShowsAVersionThatCannotBeInstalledWhateverTheReminderSays) {
  policy.ignore("2.0");
  find(information("https://navora.example/"));
  EXPECT_EQ(heading(), "Доступна новая версия");
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesOfferTest, ResumesADownloadedUpdateWhateverTheReminderSays) {
  policy.ignore("2.0");
  for (const Stage stage : {Stage::downloaded, Stage::installing}) {
    find(item(), false, stage);
    EXPECT_EQ(heading(), "Доступна Навора 2.0 (display)");
    EXPECT_THAT(buttons(), ElementsAre("Обновить приложение", "Позже"));
    press(Button::secondary);
    EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
  }
}

TEST_F(DesktopUpdatesOfferTest, InstallsADownloadedUpdateWithoutARestartCheck) {
  find(item(), false, Stage::downloaded);
  press(Button::primary);
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
  EXPECT_FALSE(screen.button(Button::secondary).enabled);
}

TEST_F(DesktopUpdatesOfferTest, ChecksTheRestartBeforeResumingAnInstallation) {
  find(item(), false, Stage::installing);
  press(Button::primary);
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
  EXPECT_FALSE(screen.button(Button::primary).enabled);
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
}

TEST_F(DesktopUpdatesOfferTest, DefersAResumedInstallationThatIsBlocked) {
  find(item(), false, Stage::installing);
  press(Button::primary);
  answerRestart("Not now");
  log.take();
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
}

}  // namespace
}  // namespace navora
