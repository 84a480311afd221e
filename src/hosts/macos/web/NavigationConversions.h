#pragma once

#import <WebKit/WebKit.h>

#include "platform/Navigation.h"
#include "platform/PageDialogDelegate.h"
#include "platform/WebRequest.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// A request of a page, as WebKit holds it.
class MacRequest final : public PlatformRequest {
 public:
  explicit MacRequest(NSURLRequest* _Nullable request) : request_(request) {}

  NSURLRequest* _Nullable urlRequest() const { return request_; }

 private:
  NSURLRequest* _Nullable request_;
};

// Conversions of WebKit's navigations to the core's values. A nil frame becomes an unknown one,
// never the main frame.

FrameInfo toFrameInfo(WKFrameInfo* _Nullable frame);
NavigationAction toNavigationAction(WKNavigationAction* action);
NavigationResponse toNavigationResponse(WKNavigationResponse* response);
OpenPanelParameters toOpenPanelParameters(WKOpenPanelParameters* parameters);

WKNavigationActionPolicy toActionPolicy(NavigationPolicy policy);
WKNavigationResponsePolicy toResponsePolicy(NavigationPolicy policy);

}  // namespace navora

NS_ASSUME_NONNULL_END
