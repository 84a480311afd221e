// The part of an update from the version that was found to its installation: the offer, the user's
// answers, and the application's consent to be restarted.

#include <utility>

#include "updates/DesktopUpdates.h"

namespace navora {

using Delay = UpdateReminderPolicy::Delay;
using Stage = UserUpdateState::Stage;

void DesktopUpdates::showUpdateFound(const AppcastItem& item, UserUpdateState state, Choose reply) {
  beginState();
  const bool userInitiated = state.userInitiated || manualCheckPending_;
  manualCheckPending_ = false;
  preserveMessage_ = false;
  installRequested_ = false;
  dismissPendingUpdate_ = [reply] { reply(UserUpdateChoice::dismiss); };
  debug("Found version " + item.versionString);
  if (item.isInformationOnlyUpdate) {
    presentInformation(item, std::move(reply));
  } else if (state.stage != Stage::notDownloaded) {
    presentResumed(item, state.stage, std::move(reply));
  } else if (!reminders_.shouldOffer(item.versionString, userInitiated)) {
    refuseOffer(reply);
  } else {
    reminders_.observeEligibleVersion(item.versionString);
    presentOffer(item, std::move(reply));
  }
}

void DesktopUpdates::presentInformation(const AppcastItem& item, Choose reply) {
  auto learnMore = inThisState([this, url = item.infoUrl, reply] {
    if (url && url->scheme() == "https") dependencies_.workspace.open(*url);
    banner_.hide();
    reply(UserUpdateChoice::dismiss);
  });
  auto later = inThisState([reply] { reply(UserUpdateChoice::dismiss); });
  present(UpdateBannerState::InformationOnly{.learnMore = std::move(learnMore),
                                             .later = std::move(later)});
}

void DesktopUpdates::presentResumed(const AppcastItem& item, Stage stage, Choose reply) {
  auto install = inThisState([this, stage, reply] {
    installRequested_ = true;
    if (stage == Stage::installing) {
      checkRestart([reply] { reply(UserUpdateChoice::install); });
    } else {
      banner_.disableActions();
      reply(UserUpdateChoice::install);
    }
  });
  auto later = inThisState([reply] { reply(UserUpdateChoice::dismiss); });
  present(UpdateBannerState::Resumed{.displayVersion = item.displayVersionString,
                                     .install = std::move(install),
                                     .later = std::move(later)});
}

void DesktopUpdates::refuseOffer(const Choose& reply) {
  debug("The version is ignored or postponed, and not offered");
  banner_.hide();
  banner_.clearActions();
  dismissPendingUpdate_ = nullptr;
  // Dismissed, not skipped: the policy records ignored versions, not the updater.
  reply(UserUpdateChoice::dismiss);
}

void DesktopUpdates::presentOffer(const AppcastItem& item, Choose reply) {
  const std::string& version = item.versionString;
  auto install = inThisState([this, version, reply] {
    reminders_.beginInstallation(version);
    installRequested_ = true;
    banner_.disableActions();
    reply(UserUpdateChoice::install);
  });
  const auto declining = [&](Action record) { return decliningOffer(reply, std::move(record)); };
  present(UpdateBannerState::Offer{
      .displayVersion = item.displayVersionString,
      .install = std::move(install),
      .postponeByHour = declining([this, version] { reminders_.postpone(version, Delay::hour); }),
      .ignore = declining([this, version] { reminders_.ignore(version); }),
      .postponeUntilTomorrow =
          declining([this, version] { reminders_.postpone(version, Delay::tomorrow); })});
}

DesktopUpdates::Action DesktopUpdates::decliningOffer(Choose reply, Action record) {
  return inThisState([this, reply = std::move(reply), record = std::move(record)] {
    record();
    banner_.hide();
    reply(UserUpdateChoice::dismiss);
  });
}

void DesktopUpdates::showReadyToInstallAndRelaunch(Choose reply) {
  debug("The update is ready to install");
  dismissPendingUpdate_ = [reply] { reply(UserUpdateChoice::dismiss); };
  Action install = [reply = std::move(reply)] { reply(UserUpdateChoice::install); };
  if (installRequested_) {
    checkRestart(std::move(install));
    return;
  }
  beginState();
  auto check = inThisState([this, install = std::move(install)] { checkRestart(install); });
  auto later = inThisState([this] { deferInstallation(); });
  present(UpdateBannerState::Ready{.install = std::move(check), .later = std::move(later)});
}

void DesktopUpdates::checkRestart(Action proceed) {
  beginState();
  banner_.disableActions();
  prepareForRestart(lifetime_.guard([this, generation = generation_, proceed = std::move(proceed)](
                                        std::optional<std::string> message) {
    if (generation == generation_) restartChecked(std::move(message), proceed);
  }));
}

void DesktopUpdates::restartChecked(std::optional<std::string> message, Action proceed) {
  debug(message ? "The restart must wait: " + *message : "Installing");
  beginState();
  if (message) {
    auto tryAgain = inThisState([this, proceed = std::move(proceed)] { checkRestart(proceed); });
    auto later = inThisState([this] { deferInstallation(); });
    present(UpdateBannerState::Blocked{.message = *std::move(message),
                                       .tryAgain = std::move(tryAgain),
                                       .later = std::move(later)});
    return;
  }
  isInstalling_ = true;
  // The reply that `proceed` may give is the last one.
  dismissPendingUpdate_ = nullptr;
  present(UpdateBannerState::Installing{});
  proceed();
}

void DesktopUpdates::deferInstallation() {
  // Copied, because the reply may end the session and with it replace the member being called.
  const Action dismiss = dismissPendingUpdate_;
  if (dismiss) return dismiss();
  // The updater waits for the application to end: there is no reply left to give.
  beginState();
  banner_.hide();
}

void DesktopUpdates::showInstallingUpdate(bool applicationTerminated,
                                          std::function<void()> retryTerminatingApplication) {
  beginState();
  present(UpdateBannerState::Installing{});
  if (applicationTerminated) return;
  banner_.setRetry(
      inThisState([this, retry = std::move(retryTerminatingApplication)] { checkRestart(retry); }));
}

}  // namespace navora
