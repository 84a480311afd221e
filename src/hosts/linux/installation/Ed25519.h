#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace navora {

using Ed25519PublicKey = std::array<unsigned char, 32>;
using Ed25519Signature = std::array<unsigned char, 64>;

// Decode base64 (RFC 4648, 4). Return std::nullopt for any other text and for another length.
std::optional<Ed25519PublicKey> readPublicKey(std::string_view base64);
std::optional<Ed25519Signature> readSignature(std::string_view base64);

// Decodes `base64` into `bytes`, skipping the characters in `ignored` (null for none). Returns
// whether the text is valid and fills `bytes` exactly.
bool readBase64(std::string_view base64, std::span<unsigned char> bytes,
                const char* ignored = nullptr);

// Returns whether `signature` is a signature of `content` by the owner of `key`.
bool isSignedBy(const Ed25519PublicKey& key, std::span<const unsigned char> content,
                const Ed25519Signature& signature);

}  // namespace navora
