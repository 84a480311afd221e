#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// Returns the value of a hexadecimal digit of either case, or nullopt for any other character.
std::optional<unsigned> hexadecimalValue(char digit);

// Returns the text with every byte except ASCII letters and digits as "%XX", which is safe in any
// part of a URL.
std::string percentEncoded(std::string_view text);

// Returns the text as one path segment: ASCII letters, digits and the other characters of `pchar`
// (RFC 3986, section 3.3) are kept, all other bytes, including "/", "?" and "%", become "%XX".
std::string percentEncodedPathSegment(std::string_view text);

// Returns the text with each "%" and two hexadecimal digits replaced by the byte.
std::string percentDecoded(std::string_view text);

// Returns whether the text begins with "%" and two hexadecimal digits.
bool startsWithPercentTriplet(std::string_view text);

// Appends the byte as "%XX" with upper-case digits.
void appendPercentTriplet(std::string& text, char byte);

}  // namespace navora
