#pragma once

#include <string>

namespace navora {

// A failure reported by the platform, with the text that the platform shows for it.
//
// Hosts keep the domain and code that their platform gives, with two exceptions that the core
// relies on: a load that was cancelled, by the user or by one of the core's own decisions, has
// `cancelledCode`, and one that ran out of time has `timedOutCode`.
struct PlatformError {
  static constexpr int cancelledCode = -999;
  static constexpr int timedOutCode = -1001;

  std::string domain;
  int code = 0;
  std::string localizedDescription;

  bool operator==(const PlatformError&) const = default;
};

}  // namespace navora
