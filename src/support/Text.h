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

// Functions on UTF-8 text. Unless a function says otherwise, text that is not valid UTF-8 is not an
// error: every byte that belongs to no valid sequence counts as one replacement character (U+FFFD)
// and is left as it is in results.

// Whether the text is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

// The length in UTF-16 code units: 2 for a character outside of the Basic Multilingual Plane.
std::size_t utf16Length(std::string_view text);

// The number of user-perceived characters (extended grapheme clusters).
std::size_t characterCount(std::string_view text);

// The first `count` user-perceived characters, or the whole text when it has fewer.
std::string prefixCharacters(std::string_view text, std::size_t count);

// The text without white space and line breaks at both ends: the general categories Zs, Zl and Zp,
// U+0009 to U+000D and U+0085.
std::string trimmed(std::string_view text);

// The text without any of these bytes at both ends; a view into it.
std::string_view strippedOf(std::string_view text, std::string_view bytes);

// A to Z lower-cased, every other byte kept; for names of protocols, hosts and the like.
std::string lowercasedAscii(std::string_view text);

// a to z upper-cased, every other byte kept.
std::string uppercasedAscii(std::string_view text);

// Lower case by the Unicode mapping of each character, independent of any language.
std::string lowercased(std::string_view text);

// Every occurrence of `from`, searched from the left without overlap, replaced by `to`. An empty
// `from` occurs nowhere.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

// The pieces between separators, empty ones included: one more piece than there are separators.
std::vector<std::string> split(std::string_view text, char separator);

// The text as a decimal number, if it is nothing else: digits, after a minus where Integer has
// negative numbers. None for a number that Integer cannot hold.
template <std::integral Integer>
std::optional<Integer> wholeNumber(std::string_view text) {
  Integer number{};
  const char* end = text.data() + text.size();
  const auto [position, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || position != end) return std::nullopt;
  return number;
}

}  // namespace navora
