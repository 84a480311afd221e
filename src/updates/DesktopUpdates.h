#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/MainQueue.h"
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

// Leads the user through an update: is what the updater reports to, shows every step in the banner,
// asks the reminder policy whether an update may be offered and remembers the answers there, and
// installs nothing before the application has agreed to be restarted.
class DesktopUpdates final : private UpdaterUserDriver, private UpdaterDelegate {
 public:
  // What updating needs of the desktop. References must outlive the DesktopUpdates.
  struct Doors {
    MainQueue& mainQueue;
    Workspace& workspace;
    std::unique_ptr<UpdateBannerView> bannerView;
    // Called once, when the updater is first needed.
    std::function<std::unique_ptr<Updater>(UpdaterUserDriver&, UpdaterDelegate&)> makeUpdater;
    DesktopUpdatesWording wording;
    // Takes a line for whoever looks into why updating failed.
    std::function<void(const std::string&)> log;
  };
  // Called once with none if a restart is all right now, otherwise with what the user is told.
  using RestartAnswer = std::function<void(std::optional<std::string> message)>;

  // The policy must outlive this object. Without a timer factory, reminders wait on the main queue.
  DesktopUpdates(Doors doors, UpdateReminderPolicy& reminderPolicy,
                 UpdateReminderController::Schedule scheduleReminder = {});

  // May answer at once or later, on the main thread.
  std::function<void(RestartAnswer)> prepareForRestart = [](const RestartAnswer& answer) {
    answer(std::nullopt);
  };
  // An attempt to update ended without a restart.
  std::function<void()> resumeEditing = [] {};
  std::function<void()> showWindow = [] {};

  // To be called once.
  void attach(MainWindow& window) { banner_.attach(window); }
  // Starts the updater and the reminder of what was postponed in an earlier launch.
  void start();
  // The user asks. Waits for a session that goes on unseen.
  void checkForUpdates();
  void refreshLocale();

  // From the moment that installation is certain until the session ends or fails.
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
  UpdateReminderController& reminders();
  void performPendingManualCheckIfReady();

  // What was handed out for an earlier state does nothing from now on.
  void beginState() { ++generation_; }
  // Does nothing once the state has ended that has begun last.
  Action inThisState(Action action);
  void present(UpdateBannerState::Value state);
  // A state that stays when the session ends. Its button closes the banner.
  template <class State>
  void presentOutcome();
  void fail(const PlatformError& error);

  void presentInformation(const AppcastItem& item, Choose reply);
  void presentResumed(const AppcastItem& item, UserUpdateState::Stage stage, Choose reply);
  void presentOffer(const AppcastItem& item, Choose reply);
  Action answeringOffer(Choose reply, Action record);
  void refuseOffer(const Choose& reply);
  void updateDownloadProgress();

  // Lets the application say whether it may be restarted now; if it may, goes on with `proceed`.
  void checkRestart(Action proceed);
  void restartChecked(std::optional<std::string> message, Action proceed);
  void deferInstallation();

  Doors doors_;
  UpdateReminderPolicy& reminderPolicy_;
  const UpdateReminderController::Schedule scheduleReminder_;
  UpdateBanner banner_;

  bool isInstalling_ = false;
  // The user has chosen to install the update that is being shown.
  bool installRequested_ = false;
  // The banner shows how things ended, which outlasts the session.
  bool preserveMessage_ = false;
  // The user asked for a check while the updater was busy.
  bool manualCheckPending_ = false;
  std::uint64_t received_ = 0;
  // 0 while it is not known.
  std::uint64_t expected_ = 0;
  // Counts what the banner has shown, so that answers to something older are dropped.
  std::uint64_t generation_ = 0;
  // Dismisses the update that waits for the user's choice; none when none waits.
  Action dismissPendingUpdate_;

  std::unique_ptr<Updater> updater_;
  std::vector<std::unique_ptr<ObserverToken>> readinessObservations_;
  std::unique_ptr<UpdateReminderController> reminders_;
  Lifetime lifetime_;
};

}  // namespace navora
