#include "support/UrlReference.h"

namespace navora {

namespace {

void removeLastSegment(std::string& path) {
  const std::size_t slash = path.rfind('/');
  path.resize(slash == std::string::npos ? 0 : slash);
}

// RFC 3986 section 5.2.4, step by step.
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

// RFC 3986 section 5.2.3.
std::string mergedPath(const UrlLayout& base, std::string_view referencePath) {
  std::string result;
  if (base.authority && base.path.empty()) {
    result = "/";
  } else {
    // Without a slash, npos + 1 is 0: nothing of the base remains.
    result = base.path.substr(0, base.path.rfind('/') + 1);
  }
  return result.append(referencePath);
}

std::string targetPath(const UrlLayout& base, const UrlLayout& reference) {
  if (reference.scheme || reference.authority || reference.path.starts_with('/')) {
    return withoutDotSegments(reference.path);
  }
  if (reference.path.empty()) {
    return std::string(base.path);
  }
  return withoutDotSegments(mergedPath(base, reference.path));
}

}  // namespace

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
    // Removing dot segments can leave two slashes in front, which would read as an authority.
    result.append("/.");
  }
  result.append(path);
  if (query) {
    result.append("?").append(*query);
  }
  if (reference.fragment) {
    result.append("#").append(*reference.fragment);
  }
  return result;
}

}  // namespace navora
