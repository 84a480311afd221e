#pragma once

#include <string>

namespace navora {

// An error reported by the platform, with its localized description.
//
// Hosts keep the platform's domain and code, except for the codes that the core depends on: a load
// cancelled by the user or by a decision of the core has `cancelledCode`, whatever timed out has
// `timedOutCode`, and a call to a service of the desktop that does not run and cannot be started
// has `unavailableCode`.
struct PlatformError {
  static constexpr int cancelledCode = -999;
  static constexpr int timedOutCode = -1001;
  static constexpr int unavailableCode = -1004;

  std::string domain;
  int code = 0;
  std::string localizedDescription;

  bool operator==(const PlatformError&) const = default;
};

}  // namespace navora
