#include "updates/DesktopRestartScript.h"

#include "support/Json.h"
#include "support/Text.h"

namespace navora {

std::optional<std::string> DesktopRestartScript::prepare(std::string_view fallbackMessage) {
  if (!isValidUtf8(fallbackMessage)) return std::nullopt;
  return "JSON.stringify({ reason: window.NavoraUpdateGuard ? window.NavoraUpdateGuard.prepare() "
         ": " +
         jsonStringLiteral(fallbackMessage) + " })";
}

}  // namespace navora
