#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace navora {

// The secret half of the key that releases are signed with, as a file with its base64 form.
class SigningKey {
 public:
  static SigningKey make();
  static std::optional<SigningKey> fromText(std::string_view base64);
  static std::optional<SigningKey> fromFile(const std::filesystem::path& file);

  // Both in base64.
  std::string secretText() const;
  std::string publicText() const;

  // In base64; none for a file that cannot be read.
  std::string sign(std::span<const unsigned char> content) const;
  std::optional<std::string> signFile(const std::filesystem::path& file) const;

 private:
  std::array<unsigned char, 32> seed_{};
  std::array<unsigned char, 32> publicKey_{};
  std::array<unsigned char, 64> secretKey_{};
};

}  // namespace navora
