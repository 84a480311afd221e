#pragma once

#import <WebKit/WebKit.h>

#include "platform/Navigation.h"
#include "platform/PageDialogDelegate.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// WebKit's view of navigations as the core's values. A frame that WebKit does not name is reported
// as unknown, never as the main one.

FrameInfo toFrameInfo(WKFrameInfo* _Nullable frame);
NavigationAction toNavigationAction(WKNavigationAction* action);
NavigationResponse toNavigationResponse(WKNavigationResponse* response);
OpenPanelParameters toOpenPanelParameters(WKOpenPanelParameters* parameters);

WKNavigationActionPolicy toActionPolicy(NavigationPolicy policy);
WKNavigationResponsePolicy toResponsePolicy(NavigationPolicy policy);

}  // namespace navora

NS_ASSUME_NONNULL_END
