#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "hosts/linux/installation/Ed25519.h"
#include "platform/PlatformError.h"

namespace navora {

// Whether the file is exactly `length` bytes that were signed with the key; the reason if not. The
// file is looked at where it lies, without a copy in memory, and must not be changed by anybody
// meanwhile. May be called on any thread.
std::optional<PlatformError> verifyArchive(const std::filesystem::path& file, std::uint64_t length,
                                           const Ed25519Signature& signature,
                                           const Ed25519PublicKey& key);

}  // namespace navora
