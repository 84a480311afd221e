#include "unit/updates/DesktopUpdatesTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DesktopUpdatesInstallationTest : public DesktopUpdatesTest {
 protected:
  DesktopUpdatesInstallationTest() { start(); }

  // Chooses to install and downloads the update.
  void installFromOffer() {
    find(item());
    press(Button::primary);
    driver().showDownloadInitiated(called("cancel"));
    driver().showDownloadDidStartExtractingUpdate();
    log.take();
    becomeReady();
  }
};

TEST_F(DesktopUpdatesInstallationTest, AsksAUserWhoHasNotChosenYet) {
  becomeReady();
  EXPECT_EQ(heading(), "Обновление готово");
  EXPECT_THAT(log.take(), IsEmpty());
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
}

TEST_F(DesktopUpdatesInstallationTest, ChecksTheRestartWhenTheUserChooses) {
  becomeReady();
  press(Button::primary);
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
  EXPECT_FALSE(screen.button(Button::primary).enabled);
  EXPECT_FALSE(updates->isInstalling());
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
  EXPECT_TRUE(updates->isInstalling());
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
}

TEST_F(DesktopUpdatesInstallationTest, ChecksTheRestartAtOnceForAUserWhoHasChosen) {
  installFromOffer();
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
  EXPECT_EQ(heading(), "Готовим обновление…");
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
}

TEST_F(DesktopUpdatesInstallationTest, InstallsAtOnceIfTheApplicationAgrees) {
  updates->prepareForRestart = [](const DesktopUpdates::RestartAnswer& answer) {
    answer(std::nullopt);
  };
  installFromOffer();
  EXPECT_THAT(log.take(), ElementsAre("reply install"));
}

TEST_F(DesktopUpdatesInstallationTest, ShowsWhyTheRestartMustWait) {
  installFromOffer();
  answerRestart("An unsaved note");
  EXPECT_EQ(heading(), "Обновление готово");
  EXPECT_EQ(detail(), "An unsaved note");
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
  EXPECT_FALSE(updates->isInstalling());
}

TEST_F(DesktopUpdatesInstallationTest, IsBlockedByAnEmptyMessage) {
  installFromOffer();
  answerRestart("");
  EXPECT_EQ(heading(), "Обновление готово");
  EXPECT_EQ(detail(), "");
  EXPECT_FALSE(updates->isInstalling());
}

TEST_F(DesktopUpdatesInstallationTest, CanBeRetriedRepeatedly) {
  installFromOffer();
  for (const char* reason : {"First", "Second", "Third"}) {
    answerRestart(reason);
    EXPECT_EQ(detail(), reason);
    EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
    press(Button::primary);
    EXPECT_FALSE(screen.button(Button::primary).enabled);
  }
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart", "reply install"));
  EXPECT_TRUE(updates->isInstalling());
}

TEST_F(DesktopUpdatesInstallationTest, DefersABlockedUpdate) {
  installFromOffer();
  answerRestart("Wait");
  log.take();
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("reply dismiss"));
}

// A reply that ends the session replaces the function that is being called.
TEST_F(DesktopUpdatesInstallationTest, SurvivesASessionThatEndsWithinTheReply) {
  driver().showReadyToInstallAndRelaunch([this](UserUpdateChoice choice) {
    driver().dismissUpdateInstallation();
    log.record(choice == UserUpdateChoice::dismiss ? "dismissed" : "installed");
  });
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("resumeEditing", "dismissed"));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesInstallationTest, AcceptsOneAnswerPerRestart) {
  installFromOffer();
  const auto answer = restartAnswers.at(0);
  answer(std::nullopt);
  answer(std::nullopt);
  answer("Late");
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart", "reply install"));
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
}

TEST_F(DesktopUpdatesInstallationTest, IgnoresAnAnswerForAnEarlierState) {
  const std::function<void()> events[] = {
      [&] { driver().showUpdaterError(error(), called("ok")); },
      [&] { driver().dismissUpdateInstallation(); },
      [&] { driver().showUserInitiatedUpdateCheck(called("cancel")); },
      [&] { driver().showUpdateNotFound(error(), called("ok")); },
      [&] { driver().showDownloadInitiated(called("cancel")); },
      [&] { driver().showDownloadDidStartExtractingUpdate(); },
      [&] { find(item("2.1")); },
  };
  for (const auto& event : events) {
    installFromOffer();
    event();
    const std::string shown = heading();
    const bool hidden = screen.hidden;
    log.take();
    answerRestart();
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(heading(), shown);
    EXPECT_EQ(screen.hidden, hidden);
    EXPECT_FALSE(updates->isInstalling());
  }
}

TEST_F(DesktopUpdatesInstallationTest, IgnoresAnAnswerAfterItIsDestroyed) {
  installFromOffer();
  log.take();
  updates.reset();
  answerRestart();
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(DesktopUpdatesInstallationTest, StartsNoCheckWhileItInstalls) {
  session.begin();
  screen.hidden = true;
  updates->checkForUpdates();
  becomeReady();
  press(Button::primary);
  answerRestart();
  log.take();
  session.end();
  queue.runDue();
  EXPECT_THAT(log.take(), IsEmpty());
  driver().dismissUpdateInstallation();
  session.delegate->didFinishUpdateCycle(std::nullopt);
  EXPECT_THAT(log.take(), ElementsAre("resumeEditing", "updater.check"));
}

TEST_F(DesktopUpdatesInstallationTest, ResumesEditingWhenTheInstallationFails) {
  installFromOffer();
  answerRestart();
  log.take();
  driver().showUpdaterError(error(), called("ok"));
  EXPECT_THAT(log.take(), ElementsAre("resumeEditing", "ok"));
  EXPECT_FALSE(updates->isInstalling());
}

TEST_F(DesktopUpdatesInstallationTest, ForgetsTheChoiceWhenTheSessionEnds) {
  find(item());
  press(Button::primary);
  driver().dismissUpdateInstallation();
  log.take();
  becomeReady();
  EXPECT_EQ(heading(), "Обновление готово");
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(DesktopUpdatesInstallationTest, ForgetsTheChoiceWhenAnotherUpdateIsFound) {
  find(item());
  press(Button::primary);
  find(item("2.1"));
  log.take();
  becomeReady();
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(DesktopUpdatesInstallationTest, OffersNoRetryAfterTheApplicationHasTerminated) {
  driver().showInstallingUpdate(true, called("retry"));
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
  EXPECT_THAT(buttons(), IsEmpty());
}

TEST_F(DesktopUpdatesInstallationTest, RetriesTheRestartAfterAnotherCheck) {
  driver().showInstallingUpdate(false, called("retry"));
  EXPECT_THAT(buttons(), ElementsAre("Перезапустить"));
  press(Button::primary);
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart"));
  EXPECT_FALSE(screen.button(Button::primary).enabled);
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("retry"));
}

TEST_F(DesktopUpdatesInstallationTest, CanBlockTheRetryOfARestart) {
  driver().showInstallingUpdate(false, called("retry"));
  press(Button::primary);
  answerRestart("An unsaved note");
  EXPECT_EQ(heading(), "Обновление готово");
  EXPECT_EQ(detail(), "An unsaved note");
  press(Button::primary);
  answerRestart();
  EXPECT_THAT(log.take(), ElementsAre("prepareForRestart", "prepareForRestart", "retry"));
  EXPECT_EQ(heading(), "Устанавливаем обновление…");
}

TEST_F(DesktopUpdatesInstallationTest, HidesTheBannerWithoutAPendingUpdate) {
  driver().showInstallingUpdate(false, called("retry"));
  press(Button::primary);
  answerRestart("An unsaved note");
  log.take();
  press(Button::secondary);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesInstallationTest, AnswersAnInstallationOnce) {
  find(item());
  press(Button::primary);
  becomeReady();
  answerRestart();
  log.take();
  driver().showInstallingUpdate(false, called("retry"));
  press(Button::primary);
  answerRestart("An unsaved note");
  log.take();
  press(Button::secondary);
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesInstallationTest, WritesItsStepsToTheDebugLog) {
  driver().showUserInitiatedUpdateCheck([] {});
  find(item());
  press(Button::primary);
  driver().showDownloadInitiated([] {});
  driver().showDownloadDidStartExtractingUpdate();
  becomeReady();
  answerRestart("Save the note.");
  press(Button::primary);
  answerRestart();
  driver().dismissUpdateInstallation();
  policy.ignore("2.0");
  find(item());
  driver().showUpdateNotFound(error(), [] {});
  EXPECT_THAT(system.debugged,
              ElementsAre("updates: Checking at the user's request", "updates: Found version 2.0",
                          "updates: Downloading", "updates: Extracting",
                          "updates: The update is ready to install",
                          "updates: The restart must wait: Save the note.", "updates: Installing",
                          "updates: The session has ended", "updates: Found version 2.0",
                          "updates: The version is ignored or postponed, and not offered",
                          "updates: There is no newer version"));
}

TEST_F(DesktopUpdatesInstallationTest, PerformsAWholeUpdate) {
  updates->checkForUpdates();
  driver().showUserInitiatedUpdateCheck(called("cancel"));
  find(item(), true);
  press(Button::primary);
  driver().showDownloadInitiated(called("cancel"));
  driver().showDownloadDidReceiveExpectedContentLength(10);
  driver().showDownloadDidReceiveData(10);
  driver().showDownloadDidStartExtractingUpdate();
  driver().showExtractionReceivedProgress(1);
  becomeReady();
  answerRestart("An unsaved note");
  press(Button::primary);
  answerRestart();
  driver().showInstallingUpdate(true, called("retry"));
  EXPECT_THAT(log.take(), ElementsAre("showWindow", "updater.check", "reply install",
                                      "prepareForRestart", "prepareForRestart", "reply install"));
  EXPECT_TRUE(updates->isInstalling());
}

}  // namespace
}  // namespace navora
