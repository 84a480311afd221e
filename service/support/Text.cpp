#include "service/support/Text.h"

namespace navora::service {
namespace {

// Returns the length of the UTF-8 sequence at the start of `text`, or 0 if it is not well formed.
std::size_t sequenceLength(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  for (std::size_t index = 1; index < length; ++index) {
    if ((byte(index) & 0xC0U) != 0x80U) return 0;
  }
  // The second byte reveals overlong forms, surrogates and values above U+10FFFF.
  if (first == 0xE0 && byte(1) < 0xA0) return 0;
  if (first == 0xED && byte(1) > 0x9F) return 0;
  if (first == 0xF0 && byte(1) < 0x90) return 0;
  if (first == 0xF4 && byte(1) > 0x8F) return 0;
  return length;
}

}  // namespace

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte & 0xC0U) == 0x80U) continue;
    units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

std::string trimmed(std::string_view text) {
  constexpr std::string_view blank = " \t\r\n\f\v";
  const std::size_t first = text.find_first_not_of(blank);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(blank) - first + 1));
}

std::string shortened(std::string_view text, std::size_t limit) {
  std::size_t position = 0;
  for (std::size_t count = 0; position < text.size(); ++count) {
    if (count == limit) return trimmed(text.substr(0, position)) + "…";
    const std::size_t length = sequenceLength(text.substr(position));
    position += length == 0 ? 1 : length;
  }
  return std::string(text);
}

std::string escapedHtml(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

}  // namespace navora::service
