// From the update that was found to its installation: what the user is offered, what the answers
// lead to, and the application's consent to be restarted.

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
  if (item.isInformationOnlyUpdate) {
    presentInformation(item, std::move(reply));
  } else if (state.stage != Stage::notDownloaded) {
    presentResumed(item, state.stage, std::move(reply));
  } else if (!reminderPolicy_.shouldOffer(item.versionString, userInitiated)) {
    refuseOffer(reply);
  } else {
    reminderPolicy_.observeEligibleVersion(item.versionString);
    reminders().refresh();
    presentOffer(item, std::move(reply));
  }
}

void DesktopUpdates::presentInformation(const AppcastItem& item, Choose reply) {
  auto learnMore = inThisState([this, url = item.infoUrl, reply] {
    if (url && url->scheme() == "https") doors_.workspace.open(*url);
    banner_.hide();
    reply(UserUpdateChoice::dismiss);
  });
  auto later = inThisState([reply] { reply(UserUpdateChoice::dismiss); });
  present(UpdateBannerState::InformationOnly{std::move(learnMore), std::move(later)});
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
  present(
      UpdateBannerState::Resumed{item.displayVersionString, std::move(install), std::move(later)});
}

void DesktopUpdates::refuseOffer(const Choose& reply) {
  banner_.hide();
  banner_.clearActions();
  dismissPendingUpdate_ = nullptr;
  // Never skipped: which versions are ignored is the policy's business, not the updater's.
  reply(UserUpdateChoice::dismiss);
}

void DesktopUpdates::presentOffer(const AppcastItem& item, Choose reply) {
  const std::string& version = item.versionString;
  auto install = inThisState([this, version, reply] {
    reminderPolicy_.beginInstallation(version);
    reminders().refresh();
    installRequested_ = true;
    banner_.disableActions();
    reply(UserUpdateChoice::install);
  });
  auto postponeByHour =
      answeringOffer(reply, [this, version] { reminderPolicy_.postpone(version, Delay::hour); });
  auto ignore = answeringOffer(reply, [this, version] { reminderPolicy_.ignore(version); });
  auto postponeUntilTomorrow = answeringOffer(
      reply, [this, version] { reminderPolicy_.postpone(version, Delay::tomorrow); });
  present(UpdateBannerState::Offer{item.displayVersionString, std::move(install),
                                   std::move(postponeByHour), std::move(ignore),
                                   std::move(postponeUntilTomorrow)});
}

// Remembers an answer that is not to install.
DesktopUpdates::Action DesktopUpdates::answeringOffer(Choose reply, Action record) {
  return inThisState([this, reply = std::move(reply), record = std::move(record)] {
    record();
    reminders().refresh();
    banner_.hide();
    reply(UserUpdateChoice::dismiss);
  });
}

void DesktopUpdates::showReadyToInstallAndRelaunch(Choose reply) {
  dismissPendingUpdate_ = [reply] { reply(UserUpdateChoice::dismiss); };
  Action install = [reply = std::move(reply)] { reply(UserUpdateChoice::install); };
  if (installRequested_) {
    checkRestart(std::move(install));
    return;
  }
  beginState();
  auto check = inThisState([this, install = std::move(install)] { checkRestart(install); });
  auto later = inThisState([this] { deferInstallation(); });
  present(UpdateBannerState::Ready{std::move(check), std::move(later)});
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
  beginState();
  if (message) {
    auto tryAgain = inThisState([this, proceed = std::move(proceed)] { checkRestart(proceed); });
    auto later = inThisState([this] { deferInstallation(); });
    present(UpdateBannerState::Blocked{*std::move(message), std::move(tryAgain), std::move(later)});
    return;
  }
  isInstalling_ = true;
  present(UpdateBannerState::Installing{});
  proceed();
}

void DesktopUpdates::deferInstallation() {
  // The reply may end the session, and with it what is called here.
  const Action dismiss = dismissPendingUpdate_;
  if (dismiss) dismiss();
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
