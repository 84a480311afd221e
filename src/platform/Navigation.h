#pragma once

#include <memory>
#include <optional>

#include "platform/WebRequest.h"
#include "support/Url.h"

namespace navora {

// A frame of the page. If a host cannot determine these facts, it reports a subframe without a URL,
// so that an unknown frame is never trusted.
struct FrameInfo {
  bool isMainFrame = false;
  // The URL of the frame's current request.
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

// A requested navigation that has not started.
struct NavigationAction {
  std::optional<Url> url;
  NavigationType type = NavigationType::other;
  FrameInfo sourceFrame;
  // Nullopt if the page requests a new window.
  std::optional<FrameInfo> targetFrame;
  // The engine asks whether to download the link, because it has the `download` attribute. False
  // where the engine downloads an allowed link by itself.
  bool shouldPerformDownload = false;
  // The platform's request; null only where no web view is involved.
  std::shared_ptr<const PlatformRequest> request;
};

struct NavigationResponse {
  std::optional<Url> url;
  bool canShowMimeType = false;
};

enum class NavigationPolicy { cancel, allow, download };

}  // namespace navora
