#include "hosts/macos/web/NavigationConversions.h"

#include "hosts/macos/system/Conversions.h"

namespace navora {

namespace {

NavigationType toNavigationType(WKNavigationType type) {
  switch (type) {
    case WKNavigationTypeLinkActivated:
      return NavigationType::linkActivated;
    case WKNavigationTypeFormSubmitted:
      return NavigationType::formSubmitted;
    case WKNavigationTypeBackForward:
      return NavigationType::backForward;
    case WKNavigationTypeReload:
      return NavigationType::reload;
    case WKNavigationTypeFormResubmitted:
      return NavigationType::formResubmitted;
    case WKNavigationTypeOther:
      break;
  }
  return NavigationType::other;
}

}  // namespace

FrameInfo toFrameInfo(WKFrameInfo* _Nullable frame) {
  return FrameInfo{.isMainFrame = frame.mainFrame == YES, .requestUrl = toUrl(frame.request.URL)};
}

NavigationAction toNavigationAction(WKNavigationAction* action) {
  WKFrameInfo* target = action.targetFrame;
  return NavigationAction{
      .url = toUrl(action.request.URL),
      .type = toNavigationType(action.navigationType),
      .sourceFrame = toFrameInfo(action.sourceFrame),
      .targetFrame = target == nil ? std::nullopt : std::optional(toFrameInfo(target)),
      .shouldPerformDownload = action.shouldPerformDownload == YES,
      .request = std::make_shared<MacRequest>(action.request),
  };
}

NavigationResponse toNavigationResponse(WKNavigationResponse* response) {
  return NavigationResponse{.url = toUrl(response.response.URL),
                            .canShowMimeType = response.canShowMIMEType == YES};
}

OpenPanelParameters toOpenPanelParameters(WKOpenPanelParameters* parameters) {
  return OpenPanelParameters{
      .allowsMultipleSelection = parameters.allowsMultipleSelection == YES,
      .allowsDirectories = parameters.allowsDirectories == YES,
  };
}

WKNavigationActionPolicy toActionPolicy(NavigationPolicy policy) {
  switch (policy) {
    case NavigationPolicy::cancel:
      return WKNavigationActionPolicyCancel;
    case NavigationPolicy::allow:
      return WKNavigationActionPolicyAllow;
    case NavigationPolicy::download:
      return WKNavigationActionPolicyDownload;
  }
}

WKNavigationResponsePolicy toResponsePolicy(NavigationPolicy policy) {
  switch (policy) {
    case NavigationPolicy::cancel:
      return WKNavigationResponsePolicyCancel;
    case NavigationPolicy::allow:
      return WKNavigationResponsePolicyAllow;
    case NavigationPolicy::download:
      return WKNavigationResponsePolicyDownload;
  }
}

}  // namespace navora
