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

struct UserScript {
  enum class InjectionTime { documentStart, documentEnd };

  std::string source;
  InjectionTime injectionTime = InjectionTime::documentStart;
  bool mainFrameOnly = true;

  bool operator==(const UserScript&) const = default;
};

// How a web view is made. Cookies and storage are persistent.
struct WebViewConfiguration {
  // The one origin that the view serves. The decisions are the delegate's; a host whose engine
  // tells it too little about frames needs the origin to answer in the delegate's terms.
  Url origin;
  // Names under which pages find `window.webkit.messageHandlers.NAME.postMessage`.
  std::vector<std::string> messageHandlerNames = {};
  // Injected into every page, in this order.
  std::vector<UserScript> userScripts = {};
  // Must outlive the view.
  ScriptMessageHandler* messageHandler = nullptr;
  bool allowsBackForwardNavigationGestures = true;
};

// The page. Used on the main thread only.
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
  // Loads a request that this very view asked about.
  virtual void load(const PlatformRequest& request) = 0;

  // The page shown, or the one being loaded; none before the first load.
  virtual std::optional<Url> url() const = 0;

  // From the start of a navigation of the main frame until everything of the page is there, or it
  // fails.
  virtual bool isLoading() const = 0;

  // Evaluates `script` in the main frame. The completion may be empty; it is called once, later,
  // unless the view goes first. An undefined result reads as null.
  virtual void evaluateJavaScript(const std::string& script,
                                  EvaluationCompletion completion = {}) = 0;

  // Every cookie in the view's store, whichever host it is for. The completion is called once,
  // later, unless the view goes first; without a readable store the list is empty.
  virtual void allCookies(CookiesCompletion completion) = 0;
};

}  // namespace navora
