#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace navora {

// The secret key that releases are signed with. Its file holds the seed in base64.
class SigningKey {
 public:
  // Makes a new random key.
  static SigningKey make();
  // Return std::nullopt if the text is not a key or the file cannot be read.
  static std::optional<SigningKey> fromText(std::string_view base64);
  static std::optional<SigningKey> fromFile(const std::filesystem::path& file);

  // Return the secret and the public key in base64.
  std::string secretText() const;
  std::string publicText() const;

  // Return the signature in base64; std::nullopt if the file cannot be read.
  std::string sign(std::span<const unsigned char> content) const;
  std::optional<std::string> signFile(const std::filesystem::path& file) const;

 private:
  std::array<unsigned char, 32> seed_{};
  std::array<unsigned char, 32> publicKey_{};
  std::array<unsigned char, 64> secretKey_{};
};

}  // namespace navora
