#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace navora {

// Functions on UTF-8 text. Unless a comment says otherwise, invalid UTF-8 is not an error: each
// byte that is not part of a valid sequence counts as one replacement character (U+FFFD) and is
// copied unchanged to the result.

// Returns whether the text is well-formed UTF-8, without overlong forms, surrogates or values above
// U+10FFFF.
bool isValidUtf8(std::string_view text);

// Returns the length in UTF-16 code units.
std::size_t utf16Length(std::string_view text);

// Returns the number of user-perceived characters (extended grapheme clusters, UAX #29).
std::size_t characterCount(std::string_view text);

// Returns the first `count` user-perceived characters, or the whole text if it has fewer.
std::string prefixCharacters(std::string_view text, std::size_t count);

// Removes white space and line breaks from both ends: the general categories Zs, Zl and Zp, U+0009
// to U+000D, U+0085 and, as Foundation's set of white space has it, U+200B (zero width space).
std::string trimmed(std::string_view text);

// Removes all of these bytes from both ends. Returns a view into `text`.
std::string_view strippedOf(std::string_view text, std::string_view bytes);

// Returns whether the text is a UUID: 36 characters (RFC 9562, section 4), hexadecimal digits in
// either case.
bool isUuid(std::string_view text);

// Maps A to Z to lower case and keeps every other byte; for protocol identifiers such as schemes
// and host names.
std::string lowercasedAscii(std::string_view text);

// Maps a to z to upper case and keeps every other byte.
std::string uppercasedAscii(std::string_view text);

// Maps each character to lower case by its language-independent Unicode mapping.
std::string lowercased(std::string_view text);

// Replaces every non-overlapping occurrence of `from`, searching from the left. An empty `from`
// matches nothing.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

// Returns the pieces between separators, including empty ones.
std::vector<std::string> split(std::string_view text, char separator);

// Parses a text that is exactly one decimal number: digits, preceded by an optional minus sign if
// Integer is signed. Returns nullopt if it is not, or if Integer cannot represent the number.
template <std::integral Integer>
std::optional<Integer> wholeNumber(std::string_view text) {
  Integer number{};
  const char* end = text.data() + text.size();
  const auto [position, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || position != end) return std::nullopt;
  return number;
}

}  // namespace navora
