#pragma once

#include <string>

namespace navora {

// One text on its way to the service. Every try to send it repeats the same body under the same
// key, so that the service stores it once.
struct CaptureAttempt {
  std::string raw;
  std::string key;
  // Who was signed in when it was first sent.
  std::string account;
  std::string body;
  std::string flowId;

  bool operator==(const CaptureAttempt&) const = default;
};

}  // namespace navora
