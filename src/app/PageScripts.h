#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Resources.h"
#include "platform/WebView.h"
#include "support/Url.h"

namespace navora {

// The scripts that the application injects into every page.
class PageScripts {
 public:
  // The four user scripts in their order; a resource script that cannot be read is left out.
  static std::vector<UserScript> userScripts(const Url& origin, std::string_view timeZoneIdentifier,
                                             const Resources& resources);

  // `body` wrapped so that it runs only on pages of `origin`.
  static std::string guarded(const Url& origin, std::string_view body);
};

}  // namespace navora
