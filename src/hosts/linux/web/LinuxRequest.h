#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/WebRequest.h"

namespace navora {

// The engine's request of a navigation, to be loaded again unchanged.
class LinuxRequest final : public PlatformRequest {
 public:
  explicit LinuxRequest(WebKitURIRequest* request)
      : request_(GObjectPtr<WebKitURIRequest>::retain(request)) {}

  WebKitURIRequest* get() const { return request_.get(); }

 private:
  GObjectPtr<WebKitURIRequest> request_;
};

}  // namespace navora
