#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The value of a hexadecimal digit of either case; absent for any other character.
std::optional<unsigned> hexadecimalValue(char digit);

// Every byte of the text as "%XX", except ASCII letters and digits: safe in any part of a URL.
std::string percentEncoded(std::string_view text);

// The text as one path segment: letters, digits and the marks that a segment may hold stay, all
// other bytes, "/", "?" and "%" among them, become "%XX".
std::string percentEncodedPathSegment(std::string_view text);

// The text with every "%XX" replaced by its byte. A "%" without two hexadecimal digits, and a
// result that is not valid UTF-8, make it absent.
std::optional<std::string> percentDecoded(std::string_view text);

// Whether the text begins with "%" and two hexadecimal digits.
bool startsWithPercentTriplet(std::string_view text);

// Appends one byte as "%XX", with upper-case digits.
void appendPercentTriplet(std::string& text, char byte);

}  // namespace navora
