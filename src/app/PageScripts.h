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
  // Returns the user scripts in the order of injection: time zone, settings, appearance, restart
  // guard. A script whose resource cannot be read is omitted.
  static std::vector<UserScript> userScripts(const Url& origin, std::string_view timeZoneIdentifier,
                                             const Resources& resources);

  // Returns `body` wrapped so that it runs only on pages of `origin`.
  static std::string guarded(const Url& origin, std::string_view body);
};

}  // namespace navora
