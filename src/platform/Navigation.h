#pragma once

#include <memory>
#include <optional>

#include "platform/WebRequest.h"
#include "support/Url.h"

namespace navora {

// A frame of the page. What a host cannot find out about a frame it reports as not the main frame
// and without a URL, so that a doubtful frame is never trusted.
struct FrameInfo {
  bool isMainFrame = false;
  // URL of the frame's current request.
  std::optional<Url> requestUrl;

  bool operator==(const FrameInfo&) const = default;
};

enum class NavigationType {
  linkActivated,
  formSubmitted,
  backForward,
  reload,
  formResubmitted,
  other
};

// A navigation that is about to happen.
struct NavigationAction {
  std::optional<Url> url;
  NavigationType type = NavigationType::other;
  FrameInfo sourceFrame;
  // None when the page asks for a new window.
  std::optional<FrameInfo> targetFrame;
  // The page marked the link as a download.
  bool shouldPerformDownload = false;
  // The request itself; null only where no view is involved.
  std::shared_ptr<const PlatformRequest> request;
};

struct NavigationResponse {
  std::optional<Url> url;
  bool canShowMimeType = false;
};

enum class NavigationPolicy { cancel, allow, download };

}  // namespace navora
