#pragma once

#include <memory>

#include "platform/Navigation.h"
#include "platform/PlatformError.h"

namespace navora {

class Download;
class WebView;

// What a web view asks and reports about its navigations. Called on the main thread; the answers
// are given before anything is sent or shown. From within a question the delegate may load another
// page, which then replaces the one asked about.
class NavigationDelegate {
 public:
  virtual ~NavigationDelegate() = default;

  virtual NavigationPolicy decidePolicyForAction(WebView& webView,
                                                 const NavigationAction& action) = 0;
  virtual NavigationPolicy decidePolicyForResponse(const NavigationResponse& response) = 0;

  // Main-frame life cycle.
  virtual void didStartProvisionalNavigation() = 0;
  virtual void didFinishNavigation() = 0;
  virtual void didFailNavigation(const PlatformError& error) = 0;
  virtual void webContentProcessDidTerminate() = 0;

  // A navigation turned into a download, which lives only as long as somebody holds it.
  virtual void navigationDidBecomeDownload(std::shared_ptr<Download> download) = 0;
};

}  // namespace navora
