#pragma once

#include <string>
#include <string_view>

#include "platform/Navigation.h"
#include "support/FatalError.h"
#include "support/Url.h"

namespace navora {

// Parses a URL literal of a test.
inline Url testUrl(std::string_view text) {
  const auto url = Url::parse(text);
  if (!url) fatalError("Not a URL: " + std::string(text), "TestUrl", __LINE__);
  return *url;
}

inline FrameInfo mainFrame(std::string_view url) {
  return {true, testUrl(url)};
}

inline FrameInfo subframe(std::string_view url) {
  return {false, testUrl(url)};
}

}  // namespace navora
