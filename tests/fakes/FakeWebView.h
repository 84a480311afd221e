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

// A request that a page made, told apart by its address.
class FakeRequest final : public PlatformRequest {
 public:
  explicit FakeRequest(Url url) : url_(std::move(url)) {}
  const Url& url() const { return url_; }

 private:
  Url url_;
};

// A view without an engine: it shows what it is told to load, and the test is the page.
class FakeWebView final : public WebView {
 public:
  FakeWebView(EventLog& log, WebViewConfiguration configuration);

  const WebViewConfiguration& configuration() const { return configuration_; }
  NavigationDelegate* navigationDelegate() const { return navigationDelegate_; }
  PageDialogDelegate* pageDialogDelegate() const { return pageDialogDelegate_; }
  // The loads that the application asked for, and the page's requests that it handed back.
  const std::vector<WebRequest>& loads() const { return loads_; }
  const std::vector<const PlatformRequest*>& requestLoads() const { return requestLoads_; }
  const std::vector<std::string>& scripts() const { return scripts_; }

  // Shows another page without anybody having asked for it.
  void setUrl(std::optional<Url> url) { url_ = std::move(url); }
  // The page posts a message. One for a handler without a registration cannot be posted.
  void post(const std::string& handler, const std::string& body, const FrameInfo& frame);
  bool loading = false;
  // What the store holds; every question is answered with it later.
  std::vector<HttpCookie> cookies;
  // Answers the oldest question for the cookies.
  void answerCookies();
  std::size_t cookieQuestions() const { return cookieQuestions_.size(); }
  std::size_t evaluationsUnderWay() const { return evaluations_.size(); }
  // Ends the oldest evaluation that is still under way.
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
