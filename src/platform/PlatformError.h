#pragma once

#include <string>

namespace navora {

// An error reported by the platform, with its localized description.
//
// Hosts keep the platform's domain and code, except for two codes that the core depends on: a load
// cancelled by the user or by a decision of the core has `cancelledCode`, one that timed out has
// `timedOutCode`.
struct PlatformError {
  static constexpr int cancelledCode = -999;
  static constexpr int timedOutCode = -1001;

  std::string domain;
  int code = 0;
  std::string localizedDescription;

  bool operator==(const PlatformError&) const = default;
};

}  // namespace navora
