#pragma once

#include <string>
#include <string_view>

namespace navora {

// Publishes the system's time zone to the page, which cannot observe changes of it.
class DesktopTimeZone {
 public:
  // Returns a script that sets the page's global `NavoraSystemTimeZone` and dispatches
  // `tolvin:systemtimezonechange`, even if the value is unchanged. The identifier is used as the
  // system reports it; invalid UTF-8 is a fatal error.
  static std::string script(std::string_view identifier);
};

}  // namespace navora
