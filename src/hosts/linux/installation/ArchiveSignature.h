#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "hosts/linux/installation/Ed25519.h"
#include "platform/PlatformError.h"

namespace navora {

// Verifies that the file has exactly `length` bytes and that `signature` is theirs. Returns the
// error if not. Maps the file instead of reading it; it must not be changed meanwhile. May be
// called on any thread.
std::optional<PlatformError> verifyArchive(const std::filesystem::path& file, std::uint64_t length,
                                           const Ed25519Signature& signature,
                                           const Ed25519PublicKey& key);

}  // namespace navora
