#pragma once

#include <string>

namespace navora {

// The style classes of the update banner and its parts.
struct BannerStyle {
  static constexpr const char* card = "navora-update-banner";
  static constexpr const char* title = "banner-title";
  static constexpr const char* detail = "banner-detail";
  static constexpr const char* primary = "banner-primary";
  static constexpr const char* tertiary = "banner-tertiary";
  static constexpr const char* close = "banner-close";

  // Returns the style sheet that extends and overrides the theme's.
  static std::string css();
};

}  // namespace navora
