#pragma once

#include <filesystem>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// Creates a private folder for a new file, beside the destination so that both are on one volume:
// ".navora-download-" and six characters. A killed process leaves it behind.
Expected<std::filesystem::path, PlatformError> makeReplacementFolder(
    const std::filesystem::path& destination);

}  // namespace navora
