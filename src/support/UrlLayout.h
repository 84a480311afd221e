#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The components of a URL as views into its text (RFC 3986, appendix B). Splitting validates
// nothing: the parts may contain characters that the grammar forbids. The text must outlive the
// layout.
struct UrlLayout {
  explicit UrlLayout(std::string_view text);

  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::optional<std::string_view> userInformation;
  std::optional<std::string_view> host;  // including the brackets of an IP literal
  std::optional<std::string_view> port;
  std::string_view path;
  std::optional<std::string_view> query;
  std::optional<std::string_view> fragment;

 private:
  void splitAuthority();
};

// Returns the text of `reference` resolved against an absolute `base` (RFC 3986, section 5.2.2,
// strict). `base` must have a scheme.
std::string resolvedReference(const UrlLayout& base, const UrlLayout& reference);

}  // namespace navora
