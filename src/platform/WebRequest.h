#pragma once

#include "support/Url.h"

namespace navora {

enum class CachePolicy { useProtocolCachePolicy, reloadIgnoringLocalCacheData };

// A page load requested by the application.
struct WebRequest {
  Url url;
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;
  // Maximum time without receiving data before the load fails with timedOutCode.
  double timeoutSeconds = 60;

  bool operator==(const WebRequest&) const = default;
};

// A request made by the page, with method, headers and body, in the platform's own representation.
// The core only passes it back to the view that it came from.
class PlatformRequest {
 public:
  virtual ~PlatformRequest() = default;
};

}  // namespace navora
