#pragma once

#include <optional>

#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "platform/PlatformError.h"

namespace navora {

// Starts the program that puts the version in `folder` in place of the installation once this
// process has ended.
std::optional<PlatformError> launchInstaller(const Installation& installation, UpdateFolder folder);

}  // namespace navora
