#include "fakes/FakeWebView.h"

#include <algorithm>

#include "platform/ScriptMessage.h"
#include "support/FatalError.h"

namespace navora {

FakeWebView::FakeWebView(EventLog& log, WebViewConfiguration configuration)
    : log_(log), configuration_(std::move(configuration)) {
  log_.record("webView.make");
}

void FakeWebView::post(const std::string& handler, const std::string& body,
                       const FrameInfo& frame) {
  const auto& names = configuration_.messageHandlerNames;
  if (std::ranges::find(names, handler) == names.end() || !configuration_.messageHandler)
    fatalError("The page finds no message handler " + handler, "FakeWebView", __LINE__);
  configuration_.messageHandler->didReceiveScriptMessage({handler, body, frame});
}

void FakeWebView::finishEvaluation(EvaluationResult result) {
  if (evaluations_.empty()) fatalError("No script is under way", "FakeWebView", __LINE__);
  const auto completion = std::move(evaluations_.front());
  evaluations_.pop_front();
  if (completion) completion(std::move(result));
}

void FakeWebView::setNavigationDelegate(NavigationDelegate* delegate) {
  log_.record(delegate ? "webView.setNavigationDelegate" : "webView.clearNavigationDelegate");
  navigationDelegate_ = delegate;
}

void FakeWebView::setPageDialogDelegate(PageDialogDelegate* delegate) {
  log_.record(delegate ? "webView.setPageDialogDelegate" : "webView.clearPageDialogDelegate");
  pageDialogDelegate_ = delegate;
}

void FakeWebView::load(const WebRequest& request) {
  log_.record("webView.load " + request.url.string());
  loads_.push_back(request);
  url_ = request.url;
}

void FakeWebView::load(const PlatformRequest& request) {
  const auto* ours = dynamic_cast<const FakeRequest*>(&request);
  if (!ours) fatalError("The request is another platform's", "FakeWebView", __LINE__);
  log_.record("webView.loadRequest " + ours->url().string());
  requestLoads_.push_back(&request);
  url_ = ours->url();
}

void FakeWebView::evaluateJavaScript(const std::string& script, EvaluationCompletion completion) {
  log_.record("webView.evaluate " + script);
  scripts_.push_back(script);
  evaluations_.push_back(std::move(completion));
}

void FakeWebView::allCookies(CookiesCompletion completion) {
  cookieQuestions_.push_back(std::move(completion));
}

void FakeWebView::answerCookies() {
  if (cookieQuestions_.empty())
    fatalError("There is no request for cookies", "FakeWebView", __LINE__);
  const auto completion = std::move(cookieQuestions_.front());
  cookieQuestions_.pop_front();
  completion(cookies);
}

}  // namespace navora
