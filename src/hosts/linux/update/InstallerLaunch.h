#pragma once

#include "hosts/linux/update/FileDescriptor.h"
#include "hosts/linux/update/Installation.h"
#include "hosts/linux/update/UpdateFolder.h"
#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// Starts the program that puts the version in `folder` in place of the installation once this
// process has ended, which it notices by the descriptor that is returned: it must be kept until
// then, and by nobody else.
Expected<FileDescriptor, PlatformError> launchInstaller(const Installation& installation,
                                                        UpdateFolder folder);

}  // namespace navora
