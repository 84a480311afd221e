#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/EventLog.h"
#include "platform/Navigation.h"
#include "platform/WebView.h"

namespace navora {

// A request made by a page, identified by its URL.
class FakeRequest final : public PlatformRequest {
 public:
  explicit FakeRequest(Url url) : url_(std::move(url)) {}
  const Url& url() const { return url_; }

 private:
  Url url_;
};

// A web view without an engine: its URL is the last one loaded, and the test acts as the page.
class FakeWebView final : public WebView {
 public:
  FakeWebView(EventLog& log, WebViewConfiguration configuration);

  const WebViewConfiguration& configuration() const { return configuration_; }
  NavigationDelegate* navigationDelegate() const { return navigationDelegate_; }
  PageDialogDelegate* pageDialogDelegate() const { return pageDialogDelegate_; }
  // The requests that the application loaded: its own, and those that the page made.
  const std::vector<WebRequest>& loads() const { return loads_; }
  const std::vector<const PlatformRequest*>& requestLoads() const { return requestLoads_; }
  const std::vector<std::string>& scripts() const { return scripts_; }

  // Shows another page without a load.
  void setUrl(std::optional<Url> url) { url_ = std::move(url); }
  // Acts as the page posting a message. A fatal error if the handler is not registered.
  void post(const std::string& handler, const std::string& body, const FrameInfo& frame);
  bool loading = false;
  // The contents of the store, returned by answerCookies().
  std::vector<HttpCookie> cookies;
  // Completes the oldest call of allCookies().
  void answerCookies();
  std::size_t cookieQuestions() const { return cookieQuestions_.size(); }
  std::size_t evaluationsUnderWay() const { return evaluations_.size(); }
  // Completes the oldest pending evaluation.
  void finishEvaluation(EvaluationResult result);

  void setNavigationDelegate(NavigationDelegate* delegate) override;
  void setPageDialogDelegate(PageDialogDelegate* delegate) override;
  void load(const WebRequest& request) override;
  void load(const PlatformRequest& request) override;
  std::optional<Url> url() const override { return url_; }
  bool isLoading() const override { return loading; }
  void evaluateJavaScript(const std::string& script, EvaluationCompletion completion) override;
  void allCookies(CookiesCompletion completion) override;

 private:
  EventLog& log_;
  WebViewConfiguration configuration_;
  NavigationDelegate* navigationDelegate_ = nullptr;
  PageDialogDelegate* pageDialogDelegate_ = nullptr;
  std::vector<WebRequest> loads_;
  std::vector<const PlatformRequest*> requestLoads_;
  std::vector<std::string> scripts_;
  std::deque<EvaluationCompletion> evaluations_;
  std::deque<CookiesCompletion> cookieQuestions_;
  std::optional<Url> url_;
};

}  // namespace navora
