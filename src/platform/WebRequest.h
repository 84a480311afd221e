#pragma once

#include "support/Url.h"

namespace navora {

enum class CachePolicy { useProtocolCachePolicy, reloadIgnoringLocalCacheData };

// A page load that the application asks for.
struct WebRequest {
  Url url;
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;
  // How long the load may go without receiving anything before it fails as timed out.
  double timeoutSeconds = 60;

  bool operator==(const WebRequest&) const = default;
};

// A request that the page made, exactly as the platform holds it (method, headers, body). The core
// only hands it back to the view that it came from.
class PlatformRequest {
 public:
  virtual ~PlatformRequest() = default;
};

}  // namespace navora
