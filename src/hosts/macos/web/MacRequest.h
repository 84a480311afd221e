#pragma once

#import <Foundation/Foundation.h>

#include "platform/WebRequest.h"

namespace navora {

// A page's request as WebKit holds it.
class MacRequest final : public PlatformRequest {
 public:
  explicit MacRequest(NSURLRequest* _Nullable request) : request_(request) {}

  NSURLRequest* _Nullable urlRequest() const { return request_; }

 private:
  NSURLRequest* _Nullable request_;
};

}  // namespace navora
