#pragma once

#include <string>

namespace navora {

// Those texts that name the desktop or its settings, and so differ from host to host; in the
// interface's current language.
struct DesktopWording {
  // Why no notification can be shown, and what to do about it.
  std::string notificationsDenied;
  // There is no newer version of the application for this kind of computer.
  std::string upToDate;
};

}  // namespace navora
