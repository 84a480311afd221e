#include "support/UrlLayout.h"

#include <algorithm>

#include <uriparser/Uri.h>

namespace navora {
namespace {

using OptionalView = std::optional<std::string_view>;

std::size_t lengthOf(const UriTextRangeA& range) {
  return static_cast<std::size_t>(range.afterLast - range.first);
}

// An empty range may lie outside the text that was parsed.
OptionalView viewOf(const UriTextRangeA& range) {
  if (range.first == nullptr) return std::nullopt;
  return std::string_view(range.first, lengthOf(range));
}

// The parser leaves out the brackets of an IP literal.
OptionalView hostOf(const UriUriA& uri) {
  const bool isLiteral = uri.hostData.ip6 != nullptr || uri.hostData.ipFuture.first != nullptr;
  if (!isLiteral) return viewOf(uri.hostText);
  return std::string_view(uri.hostText.first - 1, lengthOf(uri.hostText) + 2);
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

std::optional<UrlLayout> UrlLayout::parse(std::string_view text) {
  UriUriA uri;
  const char* errorPosition = nullptr;
  const int status =
      uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), &errorPosition);
  if (status != URI_SUCCESS) return std::nullopt;
  UrlLayout layout;
  layout.scheme = viewOf(uri.scheme);
  layout.userInformation = viewOf(uri.userInfo);
  layout.host = hostOf(uri);
  layout.port = viewOf(uri.portText);
  layout.query = viewOf(uri.query);
  layout.fragment = viewOf(uri.fragment);
  uriFreeUriMembersA(&uri);
  layout.findAuthorityAndPath(text);
  return layout;
}

// The parser has no range for the authority, and only single segments of the path.
void UrlLayout::findAuthorityAndPath(std::string_view text) {
  if (fragment) text.remove_suffix(fragment->size() + 1);
  if (query) text.remove_suffix(query->size() + 1);
  if (scheme) text.remove_prefix(scheme->size() + 1);
  if (host) {
    text.remove_prefix(2);
    const std::size_t end = std::min(text.find('/'), text.size());
    authority = text.substr(0, end);
    text.remove_prefix(end);
  }
  path = text;
}

// Not uriAddBaseUriA() of uriparser (0.9.7): it writes every IPv6 address in full, keeps a dot
// segment ("http://h///" with "g" becomes "http://h/.///g"), and drops the slash that remains of a
// path without one at its beginning ("x:a/" with "../b" becomes "x:b").
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
