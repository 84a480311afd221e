#pragma once

#include <filesystem>
#include <optional>

#include "platform/PlatformError.h"

namespace navora {

// Puts each of two folders in the place of the other, in one step that nothing can interrupt. Both
// lie on one file system, which must know this operation.
std::optional<PlatformError> exchangeFolders(const std::filesystem::path& one,
                                             const std::filesystem::path& other);

}  // namespace navora
