#pragma once

#include <filesystem>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// Creates the folder that the system provides for replacing a file: private, new, and on the same
// volume. A folder beside the destination would need the user's permission where only the file
// chosen in a save panel may be written. The system deletes what a killed process leaves.
Expected<std::filesystem::path, PlatformError> makeReplacementFolder(
    const std::filesystem::path& destination);

}  // namespace navora
