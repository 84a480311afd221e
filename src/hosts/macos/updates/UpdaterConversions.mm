#include "hosts/macos/updates/UpdaterConversions.h"

#include "hosts/macos/system/Conversions.h"

namespace navora {

namespace {

// A stage that later versions may add is treated as one that needs no more downloading: it is
// offered to the user, and nothing is installed without the application's consent.
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

}  // namespace

AppcastItem toAppcastItem(SUAppcastItem* item) {
  return AppcastItem{
      .versionString = toString(item.versionString),
      .displayVersionString = toString(item.displayVersionString),
      .infoUrl = toUrl(item.infoURL),
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

}  // namespace navora
