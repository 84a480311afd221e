#include <cstddef>
#include <cstdint>
#include <string>

#include <sodium.h>

#include "hosts/linux/installation/FeedSignature.h"
#include "support/FatalError.h"

namespace {

struct Keys {
  navora::Ed25519PublicKey publicKey{};
  std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey{};
};

Keys makeKeys() {
  if (sodium_init() < 0) {
    navora::fatalError("The cryptographic library does not start", "FeedSignatureFuzzer", __LINE__);
  }
  Keys keys;
  const std::array<unsigned char, crypto_sign_SEEDBYTES> seed{1};
  crypto_sign_seed_keypair(keys.publicKey.data(), keys.secretKey.data(), seed.data());
  return keys;
}

std::string sign(const std::string& feed, const Keys& keys) {
  navora::Ed25519Signature signature{};
  crypto_sign_detached(signature.data(), nullptr,
                       reinterpret_cast<const unsigned char*>(feed.data()), feed.size(),
                       keys.secretKey.data());
  std::array<char, sodium_base64_ENCODED_LEN(crypto_sign_BYTES, sodium_base64_VARIANT_ORIGINAL)>
      text{};
  sodium_bin2base64(text.data(), text.size(), signature.data(), signature.size(),
                    sodium_base64_VARIANT_ORIGINAL);
  return feed + "<!-- sparkle-signatures:\nedSignature: " + text.data() +
         "\nlength: " + std::to_string(feed.size()) + "\n-->\n";
}

void require(bool condition, int line) {
  if (!condition) {
    navora::fatalError("A property of signed feeds does not hold", "FeedSignatureFuzzer", line);
  }
}

}  // namespace

// Checks that text without a signature is never valid, and that signed text always is, whatever
// comments it contains.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using navora::FeedSignature;
  static const Keys keys = makeKeys();
  const std::string text(reinterpret_cast<const char*>(data), size);
  require(navora::checkFeedSignature(text, keys.publicKey) != FeedSignature::valid, __LINE__);
  const std::string feed = sign(text, keys);
  require(navora::checkFeedSignature(feed, keys.publicKey) == FeedSignature::valid, __LINE__);
  if (!text.empty() && text.find_first_not_of(" \t\r\n") != std::string::npos) {
    require(navora::checkFeedSignature(feed + text, keys.publicKey) != FeedSignature::valid,
            __LINE__);
    require(navora::checkFeedSignature(text + feed, keys.publicKey) != FeedSignature::valid,
            __LINE__);
  }
  return 0;
}
