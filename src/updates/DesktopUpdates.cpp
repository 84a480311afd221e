#include "updates/DesktopUpdates.h"

#include <algorithm>
#include <utility>

namespace navora {

DesktopUpdates::DesktopUpdates(Dependencies dependencies,
                               std::unique_ptr<UpdateBannerView> bannerView,
                               UpdateReminderPolicy& reminderPolicy,
                               UpdateReminderController::Schedule scheduleReminder)
    : dependencies_(std::move(dependencies)),
      banner_(std::move(bannerView)),
      reminders_(
          reminderPolicy,
          [this] { return updater().canCheckForUpdates() && !updater().sessionInProgress(); },
          [this] { updater().checkForUpdatesInBackground(); },
          scheduleReminder ? std::move(scheduleReminder)
                           : UpdateReminderController::scheduleTimer(dependencies_.mainQueue)) {}

Updater& DesktopUpdates::updater() {
  if (!updater_) updater_ = dependencies_.makeUpdater(*this, *this);
  return *updater_;
}

void DesktopUpdates::start() {
  // Deferred, because the updater may report a change while it is in the middle of it.
  const Action whenReady = lifetime_.guard([this] {
    dependencies_.mainQueue.async(lifetime_.guard([this] { performPendingManualCheckIfReady(); }));
  });
  readinessObservations_.clear();
  readinessObservations_.push_back(updater().observeCanCheckForUpdates(whenReady));
  readinessObservations_.push_back(updater().observeSessionInProgress(whenReady));
  if (const auto error = updater().startUpdater()) {
    fail(*error);
  } else {
    isStarted_ = true;
    reminders_.refresh();
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

void DesktopUpdates::refreshAfterResume() {
  if (isStarted_) reminders_.refresh();
}

DesktopUpdates::Action DesktopUpdates::inThisState(Action action) {
  return lifetime_.guard([this, generation = generation_, action = std::move(action)] {
    if (generation == generation_) action();
  });
}

void DesktopUpdates::present(UpdateBannerState::Value state) {
  banner_.present(UpdateBannerState::present(std::move(state)));
}

void DesktopUpdates::beginOutcome() {
  preserveMessage_ = true;
  beginState();
}

DesktopUpdates::Action DesktopUpdates::closingBanner() {
  return inThisState([this] { banner_.hide(); });
}

void DesktopUpdates::showUpdatePermissionRequest(
    std::function<void(UpdatePermissionResponse)> reply) {
  reply({.automaticUpdateChecks = true,
         .automaticUpdateDownloading = false,
         .sendSystemProfile = false});
}

void DesktopUpdates::debug(const std::string& line) const {
  dependencies_.system.debug(DebugArea::updates, line);
}

void DesktopUpdates::showUserInitiatedUpdateCheck(std::function<void()> cancellation) {
  debug("Checking at the user's request");
  preserveMessage_ = false;
  beginState();
  present(UpdateBannerState::Checking{.cancel = inThisState(std::move(cancellation))});
}

void DesktopUpdates::showUpdateNotFound(const PlatformError&,
                                        std::function<void()> acknowledgement) {
  debug("There is no newer version");
  manualCheckPending_ = false;
  beginOutcome();
  present(
      UpdateBannerState::UpToDate{.heading = dependencies_.upToDateText, .close = closingBanner()});
  acknowledgement();
}

void DesktopUpdates::showUpdaterError(const PlatformError& error,
                                      std::function<void()> acknowledgement) {
  manualCheckPending_ = false;
  fail(error);
  acknowledgement();
}

void DesktopUpdates::fail(const PlatformError& error) {
  dependencies_.system.log("Navora updater: " + error.localizedDescription);
  isInstalling_ = false;
  resumeEditing();
  beginOutcome();
  present(UpdateBannerState::Failed{.close = closingBanner()});
}

void DesktopUpdates::showDownloadInitiated(std::function<void()> cancellation) {
  debug("Downloading");
  received_ = 0;
  expected_ = 0;
  beginState();
  present(UpdateBannerState::Downloading{.cancel = inThisState(std::move(cancellation))});
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
  debug("Extracting");
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
  debug("The session has ended");
  beginState();
  installRequested_ = false;
  isInstalling_ = false;
  dismissPendingUpdate_ = nullptr;
  resumeEditing();
  if (!preserveMessage_) banner_.hide();
  banner_.clearActions();
  if (preserveMessage_) banner_.setClose(closingBanner());
}

void DesktopUpdates::showUpdateInFocus() {
  showWindow();
  if (!banner_.isHidden()) banner_.announce();
}

}  // namespace navora
