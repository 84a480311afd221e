#pragma once

#include <memory>

#include "platform/Navigation.h"
#include "platform/PlatformError.h"

namespace navora {

class Download;
class WebView;

// Decides and observes a web view's navigations. Called on the main thread; the web view waits for
// each decision before it sends a request or shows a response. While deciding, the delegate may
// load another page, which replaces the navigation in question.
class NavigationDelegate {
 public:
  virtual ~NavigationDelegate() = default;

  virtual NavigationPolicy decidePolicyForAction(WebView& webView,
                                                 const NavigationAction& action) = 0;
  virtual NavigationPolicy decidePolicyForResponse(const NavigationResponse& response) = 0;

  // Report the progress of navigations of the main frame.
  virtual void didStartProvisionalNavigation() = 0;
  virtual void didFinishNavigation() = 0;
  virtual void didFailNavigation(const PlatformError& error) = 0;
  virtual void webContentProcessDidTerminate() = 0;

  // A navigation became a download. The delegate must retain the download: releasing the last
  // reference cancels it.
  virtual void navigationDidBecomeDownload(std::shared_ptr<Download> download) = 0;
};

}  // namespace navora
