#include "hosts/linux/installation/Ed25519.h"

#include <cstddef>
#include <tuple>

#include <sodium.h>

namespace navora {
namespace {

template <std::size_t size>
std::optional<std::array<unsigned char, size>> decode(std::string_view base64) {
  std::array<unsigned char, size> bytes{};
  return readBase64(base64, bytes) ? std::optional(bytes) : std::nullopt;
}

}  // namespace

std::optional<Ed25519PublicKey> readPublicKey(std::string_view base64) {
  return decode<std::tuple_size_v<Ed25519PublicKey>>(base64);
}

std::optional<Ed25519Signature> readSignature(std::string_view base64) {
  return decode<std::tuple_size_v<Ed25519Signature>>(base64);
}

bool readBase64(std::string_view base64, std::span<unsigned char> bytes, const char* ignored) {
  std::size_t length = 0;
  const char* end = nullptr;
  return sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(), ignored,
                           &length, &end, sodium_base64_VARIANT_ORIGINAL) == 0 &&
         length == bytes.size() && end == base64.data() + base64.size();
}

bool isSignedBy(const Ed25519PublicKey& key, std::span<const unsigned char> content,
                const Ed25519Signature& signature) {
  if (sodium_init() < 0) return false;
  return crypto_sign_verify_detached(signature.data(), content.data(), content.size(),
                                     key.data()) == 0;
}

}  // namespace navora
