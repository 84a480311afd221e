#include "support/UrlLayout.h"

#include <algorithm>

namespace navora {

namespace {

bool isAsciiLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isSchemeCharacter(char character) {
  return isAsciiLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
         character == '-' || character == '.';
}

bool isScheme(std::string_view text) {
  return !text.empty() && isAsciiLetter(text.front()) &&
         std::all_of(text.begin(), text.end(), isSchemeCharacter);
}

// Cuts the text at the first delimiter: returns what stands behind it, absent without one.
std::optional<std::string_view> cutAt(std::string_view& text, char delimiter) {
  const std::size_t position = text.find(delimiter);
  if (position == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view rest = text.substr(position + 1);
  text = text.substr(0, position);
  return rest;
}

}  // namespace

UrlLayout::UrlLayout(std::string_view text) {
  fragment = cutAt(text, '#');
  query = cutAt(text, '?');
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos && isScheme(text.substr(0, colon))) {
    scheme = text.substr(0, colon);
    text.remove_prefix(colon + 1);
  }
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::size_t end = std::min(text.find('/'), text.size());
    authority = text.substr(0, end);
    text.remove_prefix(end);
    splitAuthority();
  }
  path = text;
}

void UrlLayout::splitAuthority() {
  std::string_view rest = *authority;
  const std::size_t at = rest.find('@');
  if (at != std::string_view::npos) {
    userInformation = rest.substr(0, at);
    rest.remove_prefix(at + 1);
  }
  // The colons of an IP literal do not begin a port.
  const std::size_t literalEnd = rest.starts_with('[') ? rest.find(']') : std::string_view::npos;
  const std::size_t searchFrom = literalEnd == std::string_view::npos ? 0 : literalEnd;
  const std::size_t colon = rest.find(':', searchFrom);
  host = rest.substr(0, std::min(colon, rest.size()));
  if (colon != std::string_view::npos) {
    port = rest.substr(colon + 1);
  }
}

}  // namespace navora
