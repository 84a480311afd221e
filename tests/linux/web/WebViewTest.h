#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/TestUrl.h"
#include "hosts/linux/web/LinuxWebView.h"
#include "linux/support/MainLoop.h"
#include "platform/NavigationDelegate.h"
#include "platform/PageDialogDelegate.h"
#include "platform/ScriptMessage.h"
#include "tests/support/HttpServer.h"

namespace navora {

// Records the page's messages.
class RecordedMessages final : public ScriptMessageHandler {
 public:
  void didReceiveScriptMessage(const ScriptMessage& message) override {
    received.push_back(message);
  }
  std::vector<std::string> bodies() const;

  std::vector<ScriptMessage> received;
};

// Records what the view reports. Allows every navigation unless `decide` is set.
class RecordedNavigation final : public NavigationDelegate {
 public:
  void decidePolicyForAction(WebView&, const NavigationAction& action,
                             const ActionPolicyHandler& answer) override {
    actions.push_back(action);
    answer(decide ? decide(action) : NavigationPolicy::allow);
  }
  NavigationPolicy decidePolicyForResponse(const NavigationResponse& response) override {
    responses.push_back(response);
    return NavigationPolicy::allow;
  }
  void didStartProvisionalNavigation() override { ++started; }
  void didFinishNavigation() override { ++finished; }
  void didFailNavigation(const PlatformError& error) override { failures.push_back(error); }
  void webContentProcessDidTerminate() override { ++terminated; }
  void navigationDidBecomeDownload(std::shared_ptr<Download> download) override {
    if (onDownload) onDownload(std::move(download));
  }

  // Returns the last action to `url`, or null.
  const NavigationAction* actionTo(const Url& url) const;

  std::function<NavigationPolicy(const NavigationAction&)> decide;
  // Without it downloads are cancelled.
  std::function<void(std::shared_ptr<Download>)> onDownload;
  std::vector<NavigationAction> actions;
  std::vector<NavigationResponse> responses;
  std::vector<PlatformError> failures;
  int started = 0;
  int finished = 0;
  int terminated = 0;
};

// Records the page's dialogs and answers them at once, or later if `keepWaiting` is set.
class RecordedDialogs final : public PageDialogDelegate {
 public:
  struct Dialog {
    std::string kind;
    std::string text;
    FrameInfo frame;
  };

  void runAlertPanel(const std::string& message, const FrameInfo& frame,
                     AlertCompletion completion) override;
  void runConfirmPanel(const std::string& message, const FrameInfo& frame,
                       ConfirmCompletion completion) override;
  void runTextInputPanel(const std::string& prompt, const std::optional<std::string>& defaultText,
                         const FrameInfo& frame, PromptCompletion completion) override;
  void runOpenPanel(const OpenPanelParameters& parameters, const FrameInfo& frame,
                    OpenPanelCompletion completion) override;

  std::vector<Dialog> shown;
  std::optional<std::string> lastDefaultText;
  OpenPanelParameters lastParameters;
  bool confirmation = true;
  std::optional<std::string> promptAnswer;
  std::optional<std::vector<std::filesystem::path>> files;
  // If set, each answer is added to `waiting` instead of being given.
  bool keepWaiting = false;
  std::vector<std::function<void()>> waiting;

 private:
  void finish(std::function<void()> answer);
};

// Has a web server, and a web view whose origin is that server.
class WebViewTest : public testing::Test {
 protected:
  static WebSession& session();

  // Returns a configuration with the message handler "notes" and no user scripts.
  WebViewConfiguration configuration();
  void makeView(const WebViewConfiguration& configuration);
  void makeView() { makeView(configuration()); }

  // Load a page and wait until it has finished.
  testing::AssertionResult load(const std::string& target);
  testing::AssertionResult loadHtml(const std::string& html);
  // Returns the result, or the text "error: …".
  Json evaluate(const std::string& script);
  void run(const std::string& script) { view_->evaluateJavaScript(script, {}); }
  // Waits until all messages posted so far have arrived.
  testing::AssertionResult waitForMessages();

  HttpServer server_;
  RecordedMessages messages_;
  RecordedNavigation navigation_;
  RecordedDialogs dialogs_;
  std::shared_ptr<LinuxWebView> view_;
};

}  // namespace navora
