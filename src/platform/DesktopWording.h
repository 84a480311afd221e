#pragma once

#include <string_view>

namespace navora {

// Keys of those texts that name the desktop or its settings, and so differ from host to host.
struct DesktopWording {
  // Why no notification can be shown, and what to do about it.
  std::string_view notificationsDenied;
  // A check for updates found none.
  std::string_view upToDate;
};

}  // namespace navora
