#include "updates/DesktopUpdates.h"

#include <algorithm>
#include <utility>

namespace navora {

DesktopUpdates::DesktopUpdates(Doors doors, UpdateReminderPolicy& reminderPolicy,
                               UpdateReminderController::Schedule scheduleReminder)
    : doors_(std::move(doors)),
      reminderPolicy_(reminderPolicy),
      scheduleReminder_(scheduleReminder
                            ? std::move(scheduleReminder)
                            : UpdateReminderController::scheduleTimer(doors_.mainQueue)),
      banner_(std::move(doors_.bannerView)) {}

Updater& DesktopUpdates::updater() {
  if (!updater_) updater_ = doors_.makeUpdater(*this, *this);
  return *updater_;
}

UpdateReminderController& DesktopUpdates::reminders() {
  if (!reminders_) {
    reminders_ = std::make_unique<UpdateReminderController>(
        reminderPolicy_,
        [this] { return updater().canCheckForUpdates() && !updater().sessionInProgress(); },
        [this] { updater().checkForUpdatesInBackground(); }, scheduleReminder_);
  }
  return *reminders_;
}

void DesktopUpdates::start() {
  // Not from within the change: the updater may be in the middle of something.
  const Action whenReady = lifetime_.guard([this] {
    doors_.mainQueue.async(lifetime_.guard([this] { performPendingManualCheckIfReady(); }));
  });
  readinessObservations_.clear();
  readinessObservations_.push_back(updater().observeCanCheckForUpdates(whenReady));
  readinessObservations_.push_back(updater().observeSessionInProgress(whenReady));
  if (const auto error = updater().startUpdater()) {
    fail(*error);
  } else {
    reminders().refresh();
  }
}

void DesktopUpdates::checkForUpdates() {
  showWindow();
  if (updater().sessionInProgress() && banner_.isHidden()) {
    manualCheckPending_ = true;
  } else if (updater().canCheckForUpdates()) {
    updater().checkForUpdates();
  } else {
    showUpdateInFocus();
  }
}

void DesktopUpdates::performPendingManualCheckIfReady() {
  if (!manualCheckPending_ || isInstalling_) return;
  if (!updater().canCheckForUpdates() || updater().sessionInProgress()) return;
  manualCheckPending_ = false;
  updater().checkForUpdates();
}

void DesktopUpdates::didFinishUpdateCycle(const std::optional<PlatformError>&) {
  performPendingManualCheckIfReady();
}

void DesktopUpdates::refreshLocale() {
  banner_.refreshLocale();
}

DesktopUpdates::Action DesktopUpdates::inThisState(Action action) {
  return lifetime_.guard([this, generation = generation_, action = std::move(action)] {
    if (generation == generation_) action();
  });
}

void DesktopUpdates::present(UpdateBannerState::Value state) {
  banner_.present(UpdateBannerState::present(std::move(state), doors_.wording));
}

template <class State>
void DesktopUpdates::presentOutcome() {
  preserveMessage_ = true;
  beginState();
  present(State{inThisState([this] { banner_.hide(); })});
}

void DesktopUpdates::showUpdatePermissionRequest(
    std::function<void(UpdatePermissionResponse)> reply) {
  reply({.automaticUpdateChecks = true,
         .automaticUpdateDownloading = false,
         .sendSystemProfile = false});
}

void DesktopUpdates::showUserInitiatedUpdateCheck(std::function<void()> cancellation) {
  preserveMessage_ = false;
  beginState();
  present(UpdateBannerState::Checking{inThisState(std::move(cancellation))});
}

void DesktopUpdates::showUpdateNotFound(const PlatformError&,
                                        std::function<void()> acknowledgement) {
  manualCheckPending_ = false;
  presentOutcome<UpdateBannerState::UpToDate>();
  acknowledgement();
}

void DesktopUpdates::showUpdaterError(const PlatformError& error,
                                      std::function<void()> acknowledgement) {
  manualCheckPending_ = false;
  fail(error);
  acknowledgement();
}

void DesktopUpdates::fail(const PlatformError& error) {
  doors_.log("Navora updater: " + error.localizedDescription);
  isInstalling_ = false;
  resumeEditing();
  presentOutcome<UpdateBannerState::Failed>();
}

void DesktopUpdates::showDownloadInitiated(std::function<void()> cancellation) {
  received_ = 0;
  expected_ = 0;
  beginState();
  present(UpdateBannerState::Downloading{inThisState(std::move(cancellation))});
}

void DesktopUpdates::showDownloadDidReceiveExpectedContentLength(std::uint64_t length) {
  expected_ = length;
  updateDownloadProgress();
}

void DesktopUpdates::showDownloadDidReceiveData(std::uint64_t length) {
  received_ += length;
  updateDownloadProgress();
}

void DesktopUpdates::updateDownloadProgress() {
  constexpr double unknown = -1;
  banner_.setProgress(
      expected_ == 0
          ? unknown
          : std::min(static_cast<double>(received_) / static_cast<double>(expected_), 1.0));
}

void DesktopUpdates::showDownloadDidStartExtractingUpdate() {
  beginState();
  present(UpdateBannerState::Extracting{});
}

void DesktopUpdates::showExtractionReceivedProgress(double progress) {
  banner_.setProgress(progress);
}

void DesktopUpdates::showUpdateInstalledAndRelaunched(bool, std::function<void()> acknowledgement) {
  acknowledgement();
}

void DesktopUpdates::dismissUpdateInstallation() {
  beginState();
  installRequested_ = false;
  isInstalling_ = false;
  dismissPendingUpdate_ = nullptr;
  resumeEditing();
  if (!preserveMessage_) banner_.hide();
  banner_.clearActions();
  if (preserveMessage_) banner_.setClose(inThisState([this] { banner_.hide(); }));
}

void DesktopUpdates::showUpdateInFocus() {
  showWindow();
  if (!banner_.isHidden()) banner_.announce();
}

}  // namespace navora
