#pragma once

#include <functional>
#include <memory>

#include "platform/Navigation.h"
#include "platform/PlatformError.h"

namespace navora {

class Download;
class WebView;

// Decides and observes a web view's navigations. Called on the main thread; the web view waits for
// each decision before it sends a request or shows a response. Once it has answered, the delegate
// may load another page, which replaces the navigation in question.
class NavigationDelegate {
 public:
  using ActionPolicyHandler = std::function<void(NavigationPolicy)>;

  virtual ~NavigationDelegate() = default;

  // Calls `answer` once, before the function returns and before anything that follows from the
  // decision, such as opening a link: the page waits for the answer.
  virtual void decidePolicyForAction(WebView& webView, const NavigationAction& action,
                                     const ActionPolicyHandler& answer) = 0;
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
