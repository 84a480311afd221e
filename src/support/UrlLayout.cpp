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

// Truncates the text at the first delimiter and returns what follows it, or nullopt if there is
// none.
std::optional<std::string_view> cutAt(std::string_view& text, char delimiter) {
  const std::size_t position = text.find(delimiter);
  if (position == std::string_view::npos) return std::nullopt;
  const std::string_view rest = text.substr(position + 1);
  text = text.substr(0, position);
  return rest;
}

void removeLastSegment(std::string& path) {
  const std::size_t slash = path.rfind('/');
  path.resize(slash == std::string::npos ? 0 : slash);
}

// Implements RFC 3986, section 5.2.4, step by step.
std::string withoutDotSegments(std::string_view path) {
  std::string result;
  while (!path.empty()) {
    if (path.starts_with("../")) {
      path.remove_prefix(3);
    } else if (path.starts_with("./") || path.starts_with("/./")) {
      path.remove_prefix(2);
    } else if (path == "/.") {
      path = "/";
    } else if (path.starts_with("/../")) {
      path.remove_prefix(3);
      removeLastSegment(result);
    } else if (path == "/..") {
      path = "/";
      removeLastSegment(result);
    } else if (path == "." || path == "..") {
      path = {};
    } else {
      const std::string_view segment = path.substr(0, path.find('/', 1));
      result.append(segment);
      path.remove_prefix(segment.size());
    }
  }
  return result;
}

// Implements RFC 3986, section 5.2.3.
std::string mergedPath(const UrlLayout& base, std::string_view referencePath) {
  std::string result;
  if (base.authority && base.path.empty()) {
    result = "/";
  } else {
    // If the base has no slash, npos + 1 is 0 and nothing of it is kept.
    result = base.path.substr(0, base.path.rfind('/') + 1);
  }
  return result.append(referencePath);
}

std::string targetPath(const UrlLayout& base, const UrlLayout& reference) {
  if (reference.scheme || reference.authority || reference.path.starts_with('/'))
    return withoutDotSegments(reference.path);
  if (reference.path.empty()) return std::string(base.path);
  return withoutDotSegments(mergedPath(base, reference.path));
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
  // Colons inside an IP literal do not start a port.
  const std::size_t literalEnd = rest.starts_with('[') ? rest.find(']') : std::string_view::npos;
  const std::size_t searchFrom = literalEnd == std::string_view::npos ? 0 : literalEnd;
  const std::size_t colon = rest.find(':', searchFrom);
  host = rest.substr(0, std::min(colon, rest.size()));
  if (colon != std::string_view::npos) port = rest.substr(colon + 1);
}

std::string resolvedReference(const UrlLayout& base, const UrlLayout& reference) {
  const bool ownAuthority = reference.scheme || reference.authority;
  const auto authority = ownAuthority ? reference.authority : base.authority;
  const bool inheritsQuery = !ownAuthority && reference.path.empty() && !reference.query;
  const auto query = inheritsQuery ? base.query : reference.query;
  const std::string path = targetPath(base, reference);

  std::string result(reference.scheme ? *reference.scheme : *base.scheme);
  result.append(":");
  if (authority) {
    result.append("//").append(*authority);
  } else if (path.starts_with("//")) {
    // Removing dot segments can leave a path that starts with "//", which would parse as an
    // authority.
    result.append("/.");
  }
  result.append(path);
  if (query) result.append("?").append(*query);
  if (reference.fragment) result.append("#").append(*reference.fragment);
  return result;
}

}  // namespace navora
