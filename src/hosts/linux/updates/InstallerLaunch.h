#pragma once

#include <optional>

#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "platform/PlatformError.h"

namespace navora {

// Starts navora-install-update, which waits for this process to exit and then replaces the
// installation with the version in `folder`. Returns the error if it cannot be started; `folder` is
// then removed.
std::optional<PlatformError> launchInstaller(const Installation& installation, UpdateFolder folder);

}  // namespace navora
