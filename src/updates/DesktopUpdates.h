#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/UpdateBannerView.h"
#include "platform/Updater.h"
#include "platform/Workspace.h"
#include "support/Lifetime.h"
#include "updates/UpdateBanner.h"
#include "updates/UpdateBannerState.h"
#include "updates/UpdateReminderController.h"
#include "updates/UpdateReminderPolicy.h"

namespace navora {

class MainWindow;

// Guides the user through an update: receives the updater's reports, shows every step in the
// banner, offers a version only if the reminder policy allows it, stores the user's answers there,
// and installs nothing before the application has agreed to be restarted.
class DesktopUpdates final : private UpdaterUserDriver, private UpdaterDelegate {
 public:
  // The references must outlive this object.
  struct Dependencies {
    MainQueue& mainQueue;
    const System& system;
    Workspace& workspace;
    // Called once, when the updater is first needed.
    std::function<std::unique_ptr<Updater>(UpdaterUserDriver&, UpdaterDelegate&)> makeUpdater;
    // Returns the heading for an application that is up to date, in the current language.
    UpdateBannerState::Text upToDateText;
  };
  // Called once: with nullopt if the application may be restarted now, otherwise with the message
  // for the user.
  using RestartAnswer = std::function<void(std::optional<std::string> message)>;

  // The policy must outlive this object. Without a schedule, reminders use timers of the main
  // queue.
  DesktopUpdates(Dependencies dependencies, std::unique_ptr<UpdateBannerView> bannerView,
                 UpdateReminderPolicy& reminderPolicy,
                 UpdateReminderController::Schedule scheduleReminder = {});

  // Asked before an installation; answers at once or later, on the main thread.
  std::function<void(RestartAnswer)> prepareForRestart = [](const RestartAnswer& answer) {
    answer(std::nullopt);
  };
  // Called when an update has ended without a restart.
  std::function<void()> resumeEditing = [] {};
  std::function<void()> showWindow = [] {};

  // Called once.
  void attach(MainWindow& window) { banner_.attach(window); }
  // Starts the updater, and the reminder of an update that was postponed in an earlier launch.
  void start();
  // Checks at the user's request, after the end of a session that shows no banner. If the updater
  // cannot check, announces the banner that is shown instead.
  void checkForUpdates();
  void refreshLocale();
  // Offers a postponed update whose deadline passed while the computer was asleep.
  void refreshAfterResume();

  // Returns whether an installation is certain: true until the session ends or fails.
  bool isInstalling() const { return isInstalling_; }

 private:
  using Action = std::function<void()>;

  void showUpdatePermissionRequest(std::function<void(UpdatePermissionResponse)> reply) override;
  void showUserInitiatedUpdateCheck(std::function<void()> cancellation) override;
  void showUpdateFound(const AppcastItem& item, UserUpdateState state, Choose reply) override;
  void showUpdateNotFound(const PlatformError& error,
                          std::function<void()> acknowledgement) override;
  void showUpdaterError(const PlatformError& error, std::function<void()> acknowledgement) override;
  void showDownloadInitiated(std::function<void()> cancellation) override;
  void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) override;
  void showDownloadDidReceiveData(std::uint64_t length) override;
  void showDownloadDidStartExtractingUpdate() override;
  void showExtractionReceivedProgress(double progress) override;
  void showReadyToInstallAndRelaunch(Choose reply) override;
  void showInstallingUpdate(bool applicationTerminated,
                            std::function<void()> retryTerminatingApplication) override;
  void showUpdateInstalledAndRelaunched(bool relaunched,
                                        std::function<void()> acknowledgement) override;
  void dismissUpdateInstallation() override;
  void showUpdateInFocus() override;
  void didFinishUpdateCycle(const std::optional<PlatformError>& error) override;

  Updater& updater();
  void performPendingManualCheckIfReady();

  // Begins a new state: actions returned by `inThisState` for earlier ones do nothing from now on.
  void beginState() { ++generation_; }
  // Wraps an action so that it does nothing once another state has begun.
  Action inThisState(Action action);
  void present(UpdateBannerState::Value state);
  // Begins a state that remains visible after the session has ended.
  void beginOutcome();
  void debug(const std::string& line) const;
  Action closingBanner();
  void fail(const PlatformError& error);

  void presentInformation(const AppcastItem& item, Choose reply);
  void presentResumed(const AppcastItem& item, UserUpdateState::Stage stage, Choose reply);
  void presentOffer(const AppcastItem& item, Choose reply);
  // Returns an action that stores an answer other than to install, and dismisses the offer.
  Action decliningOffer(Choose reply, Action record);
  void refuseOffer(const Choose& reply);
  void updateDownloadProgress();

  // Asks the application whether it may be restarted now, and calls `proceed` if it may.
  void checkRestart(Action proceed);
  void restartChecked(std::optional<std::string> message, Action proceed);
  void deferInstallation();

  const Dependencies dependencies_;
  UpdateBanner banner_;

  bool isStarted_ = false;
  bool isInstalling_ = false;
  // The user has chosen to install the update that is shown.
  bool installRequested_ = false;
  // The banner shows an outcome, which remains visible when the session ends.
  bool preserveMessage_ = false;
  // The user requested a check while the updater was busy.
  bool manualCheckPending_ = false;
  // Bytes of the download.
  std::uint64_t received_ = 0;
  // 0 while unknown.
  std::uint64_t expected_ = 0;
  // Incremented by beginState() to discard stale actions and answers.
  std::uint64_t generation_ = 0;
  // Dismisses the update that is waiting for the user's choice; null if none is waiting.
  Action dismissPendingUpdate_;

  std::unique_ptr<Updater> updater_;
  std::vector<std::unique_ptr<ObserverToken>> readinessObservations_;
  UpdateReminderController reminders_;
  Lifetime lifetime_;
};

}  // namespace navora
