#include "linux/web/WebViewTest.h"

#include <algorithm>
#include <utility>

namespace navora {

std::vector<std::string> RecordedMessages::bodies() const {
  std::vector<std::string> texts;
  for (const auto& message : received)
    texts.push_back(message.body);
  return texts;
}

const NavigationAction* RecordedNavigation::actionTo(const Url& url) const {
  const auto found = std::ranges::find(actions.rbegin(), actions.rend(), std::optional(url),
                                       &NavigationAction::url);
  return found == actions.rend() ? nullptr : &*found;
}

void RecordedDialogs::finish(std::function<void()> answer) {
  if (keepWaiting) {
    waiting.push_back(std::move(answer));
  } else {
    answer();
  }
}

void RecordedDialogs::runAlertPanel(const std::string& message, const FrameInfo& frame,
                                    AlertCompletion completion) {
  shown.push_back({"alert", message, frame});
  finish([completion] { completion(); });
}

void RecordedDialogs::runConfirmPanel(const std::string& message, const FrameInfo& frame,
                                      ConfirmCompletion completion) {
  shown.push_back({"confirm", message, frame});
  finish([this, completion] { completion(confirmation); });
}

void RecordedDialogs::runTextInputPanel(const std::string& prompt,
                                        const std::optional<std::string>& defaultText,
                                        const FrameInfo& frame, PromptCompletion completion) {
  shown.push_back({"prompt", prompt, frame});
  lastDefaultText = defaultText;
  finish([this, completion] { completion(promptAnswer); });
}

void RecordedDialogs::runOpenPanel(const OpenPanelParameters& parameters, const FrameInfo& frame,
                                   OpenPanelCompletion completion) {
  shown.push_back({"files", {}, frame});
  lastParameters = parameters;
  finish([this, completion] { completion(files); });
}

WebSession& WebViewTest::session() {
  // Never destroyed, because views of later tests use its processes.
  static auto* const shared = new WebSession();
  return *shared;
}

WebViewConfiguration WebViewTest::configuration() {
  return {.origin = testUrl(server_.origin()),
          .messageHandlerNames = {"notes"},
          .userScripts = {},
          .messageHandler = &messages_};
}

void WebViewTest::makeView(const WebViewConfiguration& configuration) {
  view_ = std::make_shared<LinuxWebView>(session(), configuration);
  view_->setNavigationDelegate(&navigation_);
  view_->setPageDialogDelegate(&dialogs_);
}

testing::AssertionResult WebViewTest::load(const std::string& target) {
  if (!view_) makeView();
  const int before = navigation_.finished;
  view_->load({.url = testUrl(server_.url(target))});
  return waitUntil([&] { return navigation_.finished > before; });
}

testing::AssertionResult WebViewTest::loadHtml(const std::string& html) {
  server_.serveHtml("/page", html);
  return load("/page");
}

Json WebViewTest::evaluate(const std::string& script) {
  std::optional<Json> answer;
  view_->evaluateJavaScript(script, [&](const WebView::EvaluationResult& result) {
    answer = result ? *result : Json("error: " + result.error().localizedDescription);
  });
  EXPECT_TRUE(waitUntil([&] { return answer.has_value(); })) << script;
  return answer.value_or("no result");
}

testing::AssertionResult WebViewTest::waitForMessages() {
  run("webkit.messageHandlers.notes.postMessage('end of messages')");
  const auto isEnd = [](const ScriptMessage& message) {
    return message.body == "\"end of messages\"";
  };
  const auto arrived = waitUntil([&] { return std::ranges::any_of(messages_.received, isEnd); });
  std::erase_if(messages_.received, isEnd);
  return arrived;
}

}  // namespace navora
