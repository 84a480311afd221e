#include "hosts/macos/updates/UserDriverForwarder.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/updates/UpdateSessionCallbacks.h"

using navora::AppcastItem;
using navora::UpdatePermissionResponse;
using navora::UserUpdateChoice;
using navora::UserUpdateState;

namespace {

// Treats an unknown stage of a later Sparkle as downloaded: the update is offered, and nothing is
// installed without the application's consent.
UserUpdateState::Stage toStage(SPUUserUpdateStage stage) {
  switch (stage) {
    case SPUUserUpdateStageNotDownloaded:
      return UserUpdateState::Stage::notDownloaded;
    case SPUUserUpdateStageDownloaded:
      break;
    case SPUUserUpdateStageInstalling:
      return UserUpdateState::Stage::installing;
  }
  return UserUpdateState::Stage::downloaded;
}

AppcastItem toAppcastItem(SUAppcastItem* item) {
  return AppcastItem{
      .versionString = navora::toString(item.versionString),
      .displayVersionString = navora::toString(item.displayVersionString),
      .infoUrl = navora::toUrl(item.infoURL),
      .isInformationOnlyUpdate = item.informationOnlyUpdate == YES,
  };
}

UserUpdateState toUserUpdateState(SPUUserUpdateState* state) {
  return UserUpdateState{.stage = toStage(state.stage),
                         .userInitiated = state.userInitiated == YES};
}

SPUUserUpdateChoice toUserUpdateChoice(UserUpdateChoice choice) {
  switch (choice) {
    case UserUpdateChoice::skip:
      return SPUUserUpdateChoiceSkip;
    case UserUpdateChoice::install:
      return SPUUserUpdateChoiceInstall;
    case UserUpdateChoice::dismiss:
      return SPUUserUpdateChoiceDismiss;
  }
}

SUUpdatePermissionResponse* toPermissionResponse(UpdatePermissionResponse response) {
  return [[SUUpdatePermissionResponse alloc]
      initWithAutomaticUpdateChecks:response.automaticUpdateChecks
         automaticUpdateDownloading:[NSNumber numberWithBool:response.automaticUpdateDownloading]
                  sendSystemProfile:response.sendSystemProfile];
}

std::function<void()> toFunction(void (^block)(void)) {
  return [block] { block(); };
}

std::function<void(UserUpdateChoice)> toFunction(void (^block)(SPUUserUpdateChoice)) {
  return [block](UserUpdateChoice choice) { block(toUserUpdateChoice(choice)); };
}

}  // namespace

@implementation NavoraUserDriverForwarder {
  navora::UpdateSessionCallbacks _callbacks;
}

- (void)setUserDriver:(nullable navora::UpdaterUserDriver*)userDriver {
  _userDriver = userDriver;
  _callbacks.endSession();
}

- (void)showUpdatePermissionRequest:(SPUUpdatePermissionRequest*)request
                              reply:(void (^)(SUUpdatePermissionResponse*))reply {
  const auto answer = _callbacks.once(std::function<void(UpdatePermissionResponse)>(
      [reply](UpdatePermissionResponse response) { reply(toPermissionResponse(response)); }));
  if (self.userDriver == nullptr) return answer({});
  self.userDriver->showUpdatePermissionRequest(answer);
}

- (void)showUserInitiatedUpdateCheckWithCancellation:(void (^)(void))cancellation {
  const auto cancel = _callbacks.once(toFunction(cancellation));
  if (self.userDriver == nullptr) return cancel();
  self.userDriver->showUserInitiatedUpdateCheck(cancel);
}

- (void)showUpdateFoundWithAppcastItem:(SUAppcastItem*)appcastItem
                                 state:(SPUUserUpdateState*)state
                                 reply:(void (^)(SPUUserUpdateChoice))reply {
  const auto choose = _callbacks.once(toFunction(reply));
  if (self.userDriver == nullptr) return choose(UserUpdateChoice::dismiss);
  self.userDriver->showUpdateFound(toAppcastItem(appcastItem), toUserUpdateState(state), choose);
}

// The banner shows no release notes.
- (void)showUpdateReleaseNotesWithDownloadData:(SPUDownloadData*)downloadData {
}

- (void)showUpdateReleaseNotesFailedToDownloadWithError:(NSError*)error {
}

- (void)showUpdateNotFoundWithError:(NSError*)error
                    acknowledgement:(void (^)(void))acknowledgement {
  const auto acknowledge = _callbacks.once(toFunction(acknowledgement));
  if (self.userDriver == nullptr) return acknowledge();
  self.userDriver->showUpdateNotFound(navora::toPlatformError(error), acknowledge);
}

- (void)showUpdaterError:(NSError*)error acknowledgement:(void (^)(void))acknowledgement {
  const auto acknowledge = _callbacks.once(toFunction(acknowledgement));
  if (self.userDriver == nullptr) return acknowledge();
  self.userDriver->showUpdaterError(navora::toPlatformError(error), acknowledge);
}

- (void)showDownloadInitiatedWithCancellation:(void (^)(void))cancellation {
  const auto cancel = _callbacks.once(toFunction(cancellation));
  if (self.userDriver == nullptr) return cancel();
  self.userDriver->showDownloadInitiated(cancel);
}

- (void)showDownloadDidReceiveExpectedContentLength:(uint64_t)expectedContentLength {
  if (self.userDriver == nullptr) return;
  self.userDriver->showDownloadDidReceiveExpectedContentLength(expectedContentLength);
}

- (void)showDownloadDidReceiveDataOfLength:(uint64_t)length {
  if (self.userDriver != nullptr) self.userDriver->showDownloadDidReceiveData(length);
}

- (void)showDownloadDidStartExtractingUpdate {
  if (self.userDriver != nullptr) self.userDriver->showDownloadDidStartExtractingUpdate();
}

- (void)showExtractionReceivedProgress:(double)progress {
  if (self.userDriver != nullptr) self.userDriver->showExtractionReceivedProgress(progress);
}

- (void)showReadyToInstallAndRelaunch:(void (^)(SPUUserUpdateChoice))reply {
  const auto choose = _callbacks.once(toFunction(reply));
  if (self.userDriver == nullptr) return choose(UserUpdateChoice::dismiss);
  self.userDriver->showReadyToInstallAndRelaunch(choose);
}

- (void)showInstallingUpdateWithApplicationTerminated:(BOOL)applicationTerminated
                          retryTerminatingApplication:(void (^)(void))retryTerminatingApplication {
  if (self.userDriver == nullptr) return;
  self.userDriver->showInstallingUpdate(
      applicationTerminated, _callbacks.repeatable(toFunction(retryTerminatingApplication)));
}

- (void)showUpdateInstalledAndRelaunched:(BOOL)relaunched
                         acknowledgement:(void (^)(void))acknowledgement {
  const auto acknowledge = _callbacks.once(toFunction(acknowledgement));
  if (self.userDriver == nullptr) return acknowledge();
  self.userDriver->showUpdateInstalledAndRelaunched(relaunched, acknowledge);
}

- (void)dismissUpdateInstallation {
  _callbacks.endSession();
  if (self.userDriver != nullptr) self.userDriver->dismissUpdateInstallation();
}

- (void)showUpdateInFocus {
  if (self.userDriver != nullptr) self.userDriver->showUpdateInFocus();
}

@end
