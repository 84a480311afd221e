#include <limits>

#include "unit/updates/DesktopUpdatesTest.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class DesktopUpdatesSessionTest : public DesktopUpdatesTest {};

TEST_F(DesktopUpdatesSessionTest, MakesTheUpdaterWhenItIsFirstNeeded) {
  EXPECT_THAT(log.events(), IsEmpty());
  EXPECT_TRUE(screen.hidden);
  updates->start();
  EXPECT_THAT(log.events(), ElementsAre("updater.make", "updater.observeCanCheck",
                                        "updater.observeInProgress", "updater.start"));
  EXPECT_TRUE(screen.hidden);
  EXPECT_THAT(system.logged, IsEmpty());
}

TEST_F(DesktopUpdatesSessionTest, LogsWhyTheUpdaterDoesNotStart) {
  session.startError = error();
  updates->start();
  EXPECT_THAT(system.logged, ElementsAre("Navora updater: The feed is missing."));
  EXPECT_EQ(log.events().back(), "resumeEditing");
  EXPECT_EQ(heading(), "Не удалось обновить Навору");
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, SetsTheReminderOfAnEarlierLaunch) {
  policy.postpone("2.0", UpdateReminderPolicy::Delay::hour);
  start();
  queue.advance(1h - 1ms);
  EXPECT_THAT(log.events(), IsEmpty());
  queue.advance(1ms);
  EXPECT_THAT(log.events(), ElementsAre("updater.checkInBackground"));
  EXPECT_EQ(policy.pending(), std::nullopt);
}

TEST_F(DesktopUpdatesSessionTest, SetsNoReminderIfTheUpdaterDoesNotStart) {
  policy.postpone("2.0", UpdateReminderPolicy::Delay::hour);
  session.startError = error();
  start();
  EXPECT_EQ(queue.pendingCount(), 0u);
  updates->refreshAfterResume();
  EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST_F(DesktopUpdatesSessionTest, ChecksAtADeadlineOnlyIfTheUpdaterIsIdle) {
  policy.postpone("2.0", UpdateReminderPolicy::Delay::hour);
  start();
  session.canCheck = false;
  queue.advance(1h);
  session.canCheck = true;
  session.inProgress = true;
  queue.advance(15s);
  EXPECT_THAT(log.events(), IsEmpty());
  EXPECT_TRUE(policy.pending());
  session.inProgress = false;
  queue.advance(15s);
  EXPECT_THAT(log.events(), ElementsAre("updater.checkInBackground"));
}

TEST_F(DesktopUpdatesSessionTest, ChecksOnTheUsersRequest) {
  start();
  updates->checkForUpdates();
  EXPECT_THAT(log.take(), ElementsAre("showWindow", "updater.check"));
}

TEST_F(DesktopUpdatesSessionTest, DefersTheCheckUntilAnInvisibleSessionEnds) {
  start();
  session.begin();
  queue.runDue();
  updates->checkForUpdates();
  EXPECT_THAT(log.take(), ElementsAre("showWindow"));
  session.end();
  EXPECT_THAT(log.events(), IsEmpty());
  queue.runDue();
  EXPECT_THAT(log.take(), ElementsAre("updater.check"));
  session.begin();
  session.end();
  queue.runDue();
  EXPECT_THAT(log.events(), IsEmpty());
}

TEST_F(DesktopUpdatesSessionTest, DefersTheCheckUntilTheUpdaterIsReady) {
  start();
  session.begin();
  updates->checkForUpdates();
  session.canCheck = false;
  session.end();
  queue.runDue();
  session.delegate->didFinishUpdateCycle(std::nullopt);
  EXPECT_THAT(log.take(), ElementsAre("showWindow"));
  session.setCanCheck(true);
  queue.runDue();
  EXPECT_THAT(log.take(), ElementsAre("updater.check"));
}

TEST_F(DesktopUpdatesSessionTest, ChecksWhenTheAwaitedCycleHasFinished) {
  start();
  session.inProgress = true;
  updates->checkForUpdates();
  session.inProgress = false;
  session.delegate->didFinishUpdateCycle(error());
  EXPECT_THAT(log.take(), ElementsAre("showWindow", "updater.check"));
}

TEST_F(DesktopUpdatesSessionTest, DropsTheDeferredCheckWhenTheSessionHasAResult) {
  start();
  const std::function<void()> answers[] = {
      [&] { driver().showUpdaterError(error(), called("ok")); },
      [&] { driver().showUpdateNotFound(error(), called("ok")); },
      [&] { find(item()); },
  };
  for (const auto& answer : answers) {
    session.inProgress = true;
    screen.hidden = true;
    updates->checkForUpdates();
    answer();
    log.take();
    session.end();
    queue.runDue();
    EXPECT_THAT(log.take(), IsEmpty());
  }
}

TEST_F(DesktopUpdatesSessionTest, TreatsTheVersionOfAnAwaitedSessionAsRequested) {
  start();
  policy.ignore("2.0");
  session.begin();
  updates->checkForUpdates();
  find(item(), false);
  EXPECT_EQ(heading(), "Доступна Навора 2.0 (display)");
  EXPECT_FALSE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, AnnouncesTheUpdateThatIsShown) {
  start();
  find(item());
  session.inProgress = true;
  session.canCheck = false;
  updates->checkForUpdates();
  EXPECT_THAT(log.take(), ElementsAre("showWindow", "showWindow"));
  EXPECT_THAT(screen.announcements, ElementsAre("Доступна Навора 2.0 (display)"));
}

TEST_F(DesktopUpdatesSessionTest, LetsTheUpdaterHandleARequestWhileItCanCheck) {
  start();
  find(item());
  session.inProgress = true;
  updates->checkForUpdates();
  EXPECT_THAT(log.take(), ElementsAre("showWindow", "updater.check"));
  driver().showUpdateInFocus();
  EXPECT_THAT(log.take(), ElementsAre("showWindow"));
  EXPECT_EQ(screen.announcements.size(), 1u);
}

TEST_F(DesktopUpdatesSessionTest, AnnouncesNothingWhileTheBannerIsHidden) {
  start();
  driver().showUpdateInFocus();
  EXPECT_THAT(log.take(), ElementsAre("showWindow"));
  EXPECT_THAT(screen.announcements, IsEmpty());
}

TEST_F(DesktopUpdatesSessionTest, PermitsOnlyAutomaticChecksWithoutAskingTheUser) {
  start();
  std::vector<UpdatePermissionResponse> responses;
  driver().showUpdatePermissionRequest(
      [&](UpdatePermissionResponse response) { responses.push_back(response); });
  EXPECT_THAT(responses, ElementsAre(UpdatePermissionResponse{true, false, false}));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, CancelsTheCheck) {
  start();
  driver().showUserInitiatedUpdateCheck(called("cancel"));
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("cancel"));
}

TEST_F(DesktopUpdatesSessionTest, CancelsTheDownload) {
  start();
  driver().showDownloadInitiated(called("cancel"));
  press(Button::secondary);
  EXPECT_THAT(log.take(), ElementsAre("cancel"));
}

TEST_F(DesktopUpdatesSessionTest, ShowsTheProgressOfTheDownload) {
  start();
  driver().showDownloadInitiated(called("cancel"));
  EXPECT_EQ(screen.progress, Progress::indeterminate());
  driver().showDownloadDidReceiveData(100);
  EXPECT_EQ(screen.progress, Progress::indeterminate());
  driver().showDownloadDidReceiveExpectedContentLength(1000);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.1));
  driver().showDownloadDidReceiveData(400);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.5));
  driver().showDownloadDidReceiveExpectedContentLength(2000);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.25));
  driver().showDownloadDidReceiveData(std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(screen.progress, Progress::ofFraction(1));
}

TEST_F(DesktopUpdatesSessionTest, ShowsAnIndeterminateBarForADownloadOfUnknownLength) {
  start();
  driver().showDownloadInitiated(called("cancel"));
  driver().showDownloadDidReceiveExpectedContentLength(0);
  driver().showDownloadDidReceiveData(100);
  EXPECT_EQ(screen.progress, Progress::indeterminate());
}

TEST_F(DesktopUpdatesSessionTest, ResetsTheProgressForEveryDownload) {
  start();
  driver().showDownloadInitiated(called("cancel"));
  driver().showDownloadDidReceiveExpectedContentLength(1000);
  driver().showDownloadDidReceiveData(500);
  driver().showDownloadInitiated(called("cancel"));
  EXPECT_EQ(screen.progress, Progress::indeterminate());
  driver().showDownloadDidReceiveExpectedContentLength(1000);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0));
}

TEST_F(DesktopUpdatesSessionTest, ShowsTheProgressOfTheExtraction) {
  start();
  driver().showDownloadDidStartExtractingUpdate();
  EXPECT_EQ(screen.progress, Progress::indeterminate());
  driver().showExtractionReceivedProgress(0.75);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.75));
  driver().showExtractionReceivedProgress(7);
  EXPECT_EQ(screen.progress, Progress::ofFraction(1));
}

TEST_F(DesktopUpdatesSessionTest, LogsAndShowsAnError) {
  start();
  driver().showUpdaterError(error(), called("ok"));
  EXPECT_THAT(system.logged, ElementsAre("Navora updater: The feed is missing."));
  EXPECT_THAT(log.take(), ElementsAre("resumeEditing", "ok"));
  EXPECT_EQ(heading(), "Не удалось обновить Навору");
}

TEST_F(DesktopUpdatesSessionTest, ShowsThatThereIsNoUpdate) {
  start();
  driver().showUpdateNotFound(error(), called("ok"));
  EXPECT_THAT(system.logged, IsEmpty());
  EXPECT_THAT(log.take(), ElementsAre("ok"));
  EXPECT_EQ(heading(), "Обновлений для этого Mac нет");
}

TEST_F(DesktopUpdatesSessionTest, KeepsTheOutcomeWhenTheSessionEnds) {
  start();
  const std::function<void()> outcomes[] = {
      [&] { driver().showUpdaterError(error(), called("ok")); },
      [&] { driver().showUpdateNotFound(error(), called("ok")); }};
  for (const auto& outcome : outcomes) {
    outcome();
    const std::string message = heading();
    log.take();
    driver().dismissUpdateInstallation();
    EXPECT_THAT(log.take(), ElementsAre("resumeEditing"));
    EXPECT_FALSE(screen.hidden);
    EXPECT_EQ(heading(), message);
    EXPECT_THAT(buttons(), ElementsAre("Закрыть"));
    press(Button::secondary);
    EXPECT_TRUE(screen.hidden);
  }
}

TEST_F(DesktopUpdatesSessionTest, ClosesTheOutcomeBeforeTheSessionEnds) {
  start();
  driver().showUpdateNotFound(error(), called("ok"));
  press(Button::secondary);
  EXPECT_TRUE(screen.hidden);
  driver().dismissUpdateInstallation();
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, HidesTheBannerWhenANormalSessionEnds) {
  start();
  const std::function<void()> steps[] = {
      [&] { driver().showUserInitiatedUpdateCheck(called("cancel")); },
      [&] { find(item(), true); },
      [&] { driver().showDownloadInitiated(called("cancel")); },
      [&] { driver().showDownloadDidStartExtractingUpdate(); },
      [&] { becomeReady(); },
      [&] { driver().showInstallingUpdate(true, called("retry")); },
  };
  for (const auto& step : steps) {
    step();
    EXPECT_FALSE(screen.hidden);
    driver().dismissUpdateInstallation();
    EXPECT_TRUE(screen.hidden);
  }
}

TEST_F(DesktopUpdatesSessionTest, ReplacesTheOutcomeOfAnEarlierSession) {
  start();
  driver().showUpdaterError(error(), called("ok"));
  driver().showUserInitiatedUpdateCheck(called("cancel"));
  driver().dismissUpdateInstallation();
  EXPECT_TRUE(screen.hidden);
  driver().showUpdaterError(error(), called("ok"));
  find(item());
  driver().dismissUpdateInstallation();
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, AcknowledgesAnInstalledUpdateSilently) {
  start();
  driver().showUpdateInstalledAndRelaunched(true, called("ok"));
  EXPECT_THAT(log.take(), ElementsAre("ok"));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(DesktopUpdatesSessionTest, IgnoresCallbacksAfterItIsDestroyed) {
  start();
  session.begin();
  updates->checkForUpdates();
  session.end();
  log.take();
  updates.reset();
  EXPECT_EQ(session.inProgressObservers.count() + session.canCheckObservers.count(), 0u);
  queue.runDue();
  EXPECT_THAT(log.take(), IsEmpty());
}

}  // namespace
}  // namespace navora
