#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The components of a URL as views into its text, which must outlive the layout.
struct UrlLayout {
  // Returns nullopt if the text is not a URI reference of RFC 3986.
  static std::optional<UrlLayout> parse(std::string_view text);

  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::optional<std::string_view> userInformation;
  std::optional<std::string_view> host;  // including the brackets of an IP literal
  std::optional<std::string_view> port;
  std::string_view path;
  std::optional<std::string_view> query;
  std::optional<std::string_view> fragment;

 private:
  void findAuthorityAndPath(std::string_view text);
};

// Returns the text of `reference` resolved against an absolute `base` (RFC 3986, section 5.2.2,
// strict). `base` must have a scheme.
std::string resolvedReference(const UrlLayout& base, const UrlLayout& reference);

}  // namespace navora
