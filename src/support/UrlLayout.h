#pragma once

#include <optional>
#include <string_view>

namespace navora {

// Where the parts of a URL lie in its text (RFC 3986 appendix B). Splitting judges nothing: the
// parts may hold characters that the grammar refuses. The views point into the text that was split.
struct UrlLayout {
  explicit UrlLayout(std::string_view text);

  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::optional<std::string_view> userInformation;
  std::optional<std::string_view> host;  // with the brackets of an IP literal
  std::optional<std::string_view> port;
  std::string_view path;
  std::optional<std::string_view> query;
  std::optional<std::string_view> fragment;

 private:
  void splitAuthority();
};

}  // namespace navora
