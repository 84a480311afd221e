#include "app/DesktopTimeZone.h"

#include "support/FatalError.h"
#include "support/Json.h"
#include "support/Text.h"

namespace navora {

std::string DesktopTimeZone::script(std::string_view identifier) {
  if (!isValidUtf8(identifier))
    fatalError("The time zone identifier cannot be encoded", "TimeZone", 5);
  return "window.NavoraSystemTimeZone = " + jsonStringLiteral(identifier) +
         "; window.dispatchEvent(new CustomEvent('tolvin:systemtimezonechange'));";
}

}  // namespace navora
