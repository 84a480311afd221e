#pragma once

#include <span>
#include <string_view>

namespace navora {

// Fills the bytes from their base64 form; false for any other text and for another number of bytes.
// The characters in `ignored` may stand anywhere in the text.
bool readBase64(std::string_view text, std::span<unsigned char> bytes,
                const char* ignored = nullptr);

}  // namespace navora
