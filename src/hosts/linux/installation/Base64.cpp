#include "hosts/linux/installation/Base64.h"

#include <cstddef>

#include <sodium.h>

namespace navora {

bool readBase64(std::string_view text, std::span<unsigned char> bytes, const char* ignored) {
  std::size_t length = 0;
  const char* end = nullptr;
  return sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), ignored, &length,
                           &end, sodium_base64_VARIANT_ORIGINAL) == 0 &&
         length == bytes.size() && end == text.data() + text.size();
}

}  // namespace navora
