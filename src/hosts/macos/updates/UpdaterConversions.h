#pragma once

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Between the core's view of updates and Sparkle's.

AppcastItem toAppcastItem(SUAppcastItem* item);
UserUpdateState toUserUpdateState(SPUUserUpdateState* state);

SPUUserUpdateChoice toUserUpdateChoice(UserUpdateChoice choice);
SUUpdatePermissionResponse* toPermissionResponse(UpdatePermissionResponse response);

}  // namespace navora

NS_ASSUME_NONNULL_END
