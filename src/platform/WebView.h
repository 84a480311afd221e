#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/HttpCookie.h"
#include "platform/PlatformError.h"
#include "platform/WebRequest.h"
#include "support/Expected.h"
#include "support/Json.h"
#include "support/Url.h"

namespace navora {

class NavigationDelegate;
class PageDialogDelegate;
class ScriptMessageHandler;

// A script injected into the main frame of every page.
struct UserScript {
  enum class InjectionTime { documentStart, documentEnd };

  std::string source;
  InjectionTime injectionTime = InjectionTime::documentStart;

  bool operator==(const UserScript&) const = default;
};

// The configuration of a web view. Cookies and storage are persistent; back and forward gestures
// are enabled.
struct WebViewConfiguration {
  // The one origin that the view serves. Navigation decisions are the delegate's; a host whose
  // engine does not report enough about frames needs the origin to derive the missing facts.
  Url origin;
  // Each NAME is available to pages as `window.webkit.messageHandlers.NAME.postMessage`.
  std::vector<std::string> messageHandlerNames = {};
  // Injected into every page, in this order.
  std::vector<UserScript> userScripts = {};
  // Must outlive the view.
  ScriptMessageHandler* messageHandler = nullptr;
};

// Shows the page. Main thread only.
class WebView {
 public:
  using EvaluationResult = Expected<Json, PlatformError>;
  using EvaluationCompletion = std::function<void(EvaluationResult)>;
  using CookiesCompletion = std::function<void(std::vector<HttpCookie>)>;

  virtual ~WebView() = default;

  // Must outlive the view or be replaced by null.
  virtual void setNavigationDelegate(NavigationDelegate* delegate) = 0;
  virtual void setPageDialogDelegate(PageDialogDelegate* delegate) = 0;

  virtual void load(const WebRequest& request) = 0;
  // Loads a request that this view passed to its navigation delegate.
  virtual void load(const PlatformRequest& request) = 0;

  // Returns the URL of the page being loaded or shown, or nullopt before the first load.
  virtual std::optional<Url> url() const = 0;

  // Returns true from the start of a main-frame navigation until the page is completely loaded or
  // has failed.
  virtual bool isLoading() const = 0;

  // Evaluates `script` in the main frame. `completion` may be empty; it is called once, after the
  // function has returned, unless the view is destroyed first. An undefined result becomes null.
  virtual void evaluateJavaScript(const std::string& script,
                                  EvaluationCompletion completion = {}) = 0;

  // Fetches every cookie in the view's store, for all hosts. `completion` is called once, after the
  // function has returned, unless the view is destroyed first; the list is empty if the store
  // cannot be read.
  virtual void allCookies(CookiesCompletion completion) = 0;
};

}  // namespace navora
