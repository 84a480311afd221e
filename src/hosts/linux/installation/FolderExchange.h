#pragma once

#include <filesystem>
#include <optional>

#include "platform/PlatformError.h"

namespace navora {

// Exchanges two folders atomically (renameat2 with RENAME_EXCHANGE). Both must be on one file
// system that supports it. Returns the error if the exchange failed.
std::optional<PlatformError> exchangeFolders(const std::filesystem::path& one,
                                             const std::filesystem::path& other);

}  // namespace navora
