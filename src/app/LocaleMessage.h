#pragma once

#include <optional>
#include <string>

#include "support/Json.h"

namespace navora {

// The page's report of the user's language setting.
struct LocaleMessage {
  // "system" or a supported code.
  std::string requested;
  std::optional<std::string> detected;

  // None unless the whole body is valid. Only exact codes count here: what the service sends is
  // its own list of languages, not a tag to be interpreted.
  static std::optional<LocaleMessage> read(const Json& body);

  bool operator==(const LocaleMessage&) const = default;
};

}  // namespace navora
