#pragma once

#include <string>
#include <string_view>

namespace navora {

// Publishes the system's time zone to the page, which cannot observe its changes by itself.
class DesktopTimeZone {
 public:
  // The script that sets the page's global value and announces it by an event, also when the value
  // is the old one. The identifier is passed on as the system reports it; one that is not valid
  // UTF-8 is a fatal error.
  static std::string script(std::string_view identifier);
};

}  // namespace navora
