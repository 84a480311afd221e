#include "support/Text.h"

#include <optional>

#include <utf8proc.h>

#include "support/PercentEncoding.h"

namespace navora {
namespace {

constexpr utf8proc_int32_t replacementCharacter = 0xFFFD;
constexpr utf8proc_int32_t firstBeyondBasicPlane = 0x10000;
constexpr utf8proc_int32_t capitalIWithDotAbove = 0x130;
constexpr utf8proc_int32_t zeroWidthSpace = 0x200B;

struct Scalar {
  utf8proc_int32_t value;
  std::string_view bytes;
  bool valid;
};

// Returns the first Unicode scalar value of a non-empty text.
Scalar firstScalar(std::string_view text) {
  // Most texts are mostly ASCII, and some are counted with every key.
  if (static_cast<unsigned char>(text.front()) < 0x80)
    return {text.front(), text.substr(0, 1), true};
  utf8proc_int32_t value = 0;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &value);
  if (size <= 0) return {replacementCharacter, text.substr(0, 1), false};
  return {value, text.substr(0, static_cast<std::size_t>(size)), true};
}

// Returns the last Unicode scalar value of a non-empty text.
Scalar lastScalar(std::string_view text) {
  constexpr std::size_t longestSequence = 4;
  const auto isContinuation = [](char byte) {
    return (static_cast<unsigned char>(byte) >> 6) == 2;
  };
  std::size_t begin = text.size() - 1;
  while (begin > 0 && text.size() - begin < longestSequence && isContinuation(text[begin]))
    --begin;
  const std::string_view sequence = text.substr(begin);
  const Scalar scalar = firstScalar(sequence);
  if (scalar.bytes.size() == sequence.size()) return scalar;
  return {replacementCharacter, text.substr(text.size() - 1), false};
}

void append(std::string& text, utf8proc_int32_t value) {
  utf8proc_uint8_t bytes[4];
  const auto size = utf8proc_encode_char(value, bytes);
  text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

bool isWhiteSpaceOrNewline(utf8proc_int32_t value) {
  if ((value >= 0x09 && value <= 0x0D) || value == 0x85 || value == zeroWidthSpace) return true;
  const auto category = utf8proc_category(value);
  return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
         category == UTF8PROC_CATEGORY_ZP;
}

struct ClusterScan {
  std::size_t clusters;
  std::size_t bytes;
};

// Counts extended grapheme clusters from the start of the text, at most `maximum`, and their bytes.
ClusterScan scanClusters(std::string_view text, std::size_t maximum) {
  std::size_t clusters = 0;
  std::optional<utf8proc_int32_t> previous;
  utf8proc_int32_t state = 0;
  std::string_view rest = text;
  while (!rest.empty()) {
    const Scalar scalar = firstScalar(rest);
    if (!previous || utf8proc_grapheme_break_stateful(*previous, scalar.value, &state)) {
      if (clusters == maximum) break;
      ++clusters;
    }
    previous = scalar.value;
    rest.remove_prefix(scalar.bytes.size());
  }
  return {clusters, text.size() - rest.size()};
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const Scalar scalar = firstScalar(text);
    if (!scalar.valid) return false;
    text.remove_prefix(scalar.bytes.size());
  }
  return true;
}

std::size_t utf16Length(std::string_view text) {
  std::size_t length = 0;
  while (!text.empty()) {
    const Scalar scalar = firstScalar(text);
    length += scalar.value >= firstBeyondBasicPlane ? 2 : 1;
    text.remove_prefix(scalar.bytes.size());
  }
  return length;
}

std::size_t characterCount(std::string_view text) {
  return scanClusters(text, text.size()).clusters;
}

std::string prefixCharacters(std::string_view text, std::size_t count) {
  return std::string(text.substr(0, scanClusters(text, count).bytes));
}

std::string trimmed(std::string_view text) {
  while (!text.empty()) {
    const Scalar first = firstScalar(text);
    if (!isWhiteSpaceOrNewline(first.value)) break;
    text.remove_prefix(first.bytes.size());
  }
  while (!text.empty()) {
    const Scalar last = lastScalar(text);
    if (!isWhiteSpaceOrNewline(last.value)) break;
    text.remove_suffix(last.bytes.size());
  }
  return std::string(text);
}

std::string_view strippedOf(std::string_view text, std::string_view bytes) {
  const auto first = text.find_first_not_of(bytes);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(bytes) - first + 1);
}

bool isUuid(std::string_view text) {
  if (text.size() != 36) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const bool isDashPlace = index == 8 || index == 13 || index == 18 || index == 23;
    if (isDashPlace ? text[index] != '-' : !hexadecimalValue(text[index])) return false;
  }
  return true;
}

std::string lowercasedAscii(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return result;
}

std::string uppercasedAscii(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return result;
}

std::string lowercased(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Scalar scalar = firstScalar(text);
    if (!scalar.valid) {
      result.append(scalar.bytes);
    } else if (scalar.value == capitalIWithDotAbove) {
      // U+0130 is the only character whose lower case is two characters; utf8proc maps one to one.
      result.append("i\xCC\x87");
    } else {
      append(result, utf8proc_tolower(scalar.value));
    }
    text.remove_prefix(scalar.bytes.size());
  }
  return result;
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  std::size_t offset = 0;
  while (!from.empty()) {
    const std::size_t found = text.find(from, offset);
    if (found == std::string_view::npos) break;
    result.append(text, offset, found - offset).append(to);
    offset = found + from.size();
  }
  return result.append(text, offset);
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  std::size_t begin = 0;
  for (std::size_t end = 0; end <= text.size(); ++end) {
    if (end == text.size() || text[end] == separator) {
      pieces.emplace_back(text.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  return pieces;
}

}  // namespace navora
