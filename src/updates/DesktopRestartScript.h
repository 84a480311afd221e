#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The script that asks the page whether it may be unloaded for an update.
class DesktopRestartScript {
 public:
  // Returns a script that evaluates to the JSON text of an object whose member "reason" says why
  // the update must wait: the answer of the page's guard, or `fallbackMessage` if the page has no
  // guard. Returns nullopt if the message is not valid UTF-8.
  static std::optional<std::string> prepare(std::string_view fallbackMessage);
};

}  // namespace navora
