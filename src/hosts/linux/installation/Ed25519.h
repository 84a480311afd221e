#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace navora {

using Ed25519PublicKey = std::array<unsigned char, 32>;
using Ed25519Signature = std::array<unsigned char, 64>;

// From base64; none for anything else or another length.
std::optional<Ed25519PublicKey> readPublicKey(std::string_view base64);
std::optional<Ed25519Signature> readSignature(std::string_view base64);

bool isSignedBy(const Ed25519PublicKey& key, std::span<const unsigned char> content,
                const Ed25519Signature& signature);

}  // namespace navora
