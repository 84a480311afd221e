#include "make-update/SigningKey.h"

#include <fstream>

#include <sodium.h>

#include "hosts/linux/installation/Ed25519.h"
#include "support/FatalError.h"

namespace navora {
namespace {

void requireSodium() {
  if (sodium_init() < 0)
    fatalError("The cryptographic library does not start", "SigningKey", __LINE__);
}

std::string base64(std::span<const unsigned char> bytes) {
  std::string text(sodium_base64_encoded_len(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(),
                    sodium_base64_VARIANT_ORIGINAL);
  // The length includes the terminating null.
  text.pop_back();
  return text;
}

// Returns std::nullopt if the file cannot be read completely.
std::optional<std::string> readAll(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::string content;
  std::array<char, 64 * 1024> buffer{};
  while (stream.read(buffer.data(), buffer.size()) || stream.gcount() > 0)
    content.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
  if (stream.bad()) return std::nullopt;
  return content;
}

}  // namespace

SigningKey SigningKey::make() {
  requireSodium();
  SigningKey key;
  randombytes_buf(key.seed_.data(), key.seed_.size());
  crypto_sign_seed_keypair(key.publicKey_.data(), key.secretKey_.data(), key.seed_.data());
  return key;
}

std::optional<SigningKey> SigningKey::fromText(std::string_view text) {
  requireSodium();
  SigningKey key;
  if (!readBase64(text, key.seed_, " \t\r\n")) return std::nullopt;
  crypto_sign_seed_keypair(key.publicKey_.data(), key.secretKey_.data(), key.seed_.data());
  return key;
}

std::optional<SigningKey> SigningKey::fromFile(const std::filesystem::path& file) {
  const auto text = readAll(file);
  return text ? fromText(*text) : std::nullopt;
}

std::string SigningKey::secretText() const {
  return base64(seed_);
}

std::string SigningKey::publicText() const {
  return base64(publicKey_);
}

std::string SigningKey::sign(std::span<const unsigned char> content) const {
  std::array<unsigned char, crypto_sign_BYTES> signature{};
  crypto_sign_detached(signature.data(), nullptr, content.data(), content.size(),
                       secretKey_.data());
  return base64(signature);
}

std::optional<std::string> SigningKey::signFile(const std::filesystem::path& file) const {
  const auto content = readAll(file);
  if (!content) return std::nullopt;
  return sign({reinterpret_cast<const unsigned char*>(content->data()), content->size()});
}

}  // namespace navora
