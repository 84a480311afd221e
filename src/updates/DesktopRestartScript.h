#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The question to the page whether it may be torn down for an update.
class DesktopRestartScript {
 public:
  // A script that evaluates to the JSON text of an object whose member "reason" says why the update
  // must wait: what the page's guard answers, or `fallbackMessage` where the page has no guard.
  // None if the message is not valid UTF-8.
  static std::optional<std::string> prepare(std::string_view fallbackMessage);
};

}  // namespace navora
