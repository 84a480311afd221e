#include "hosts/macos/updates/UserDriverForwarder.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/updates/UpdateSessionCallbacks.h"
#include "hosts/macos/updates/UpdaterConversions.h"

using navora::UpdatePermissionResponse;
using navora::UserUpdateChoice;

namespace {

std::function<void()> toFunction(void (^block)(void)) {
  return [block] { block(); };
}

std::function<void(UserUpdateChoice)> toFunction(void (^block)(SPUUserUpdateChoice)) {
  return [block](UserUpdateChoice choice) { block(navora::toUserUpdateChoice(choice)); };
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
  const auto answer = _callbacks.once(
      std::function<void(UpdatePermissionResponse)>([reply](UpdatePermissionResponse response) {
        reply(navora::toPermissionResponse(response));
      }));
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
  self.userDriver->showUpdateFound(navora::toAppcastItem(appcastItem),
                                   navora::toUserUpdateState(state), choose);
}

// No release notes are shown.
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
