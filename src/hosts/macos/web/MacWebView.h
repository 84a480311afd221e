#pragma once

#import <WebKit/WebKit.h>

#include "platform/WebView.h"
#include "support/Lifetime.h"

@class NavoraNavigationForwarder;
@class NavoraPageView;
@class NavoraScriptMessageForwarder;

namespace navora {

class MacWebView final : public WebView {
 public:
  explicit MacWebView(const WebViewConfiguration& configuration);
  ~MacWebView() override;
  MacWebView(const MacWebView&) = delete;
  MacWebView& operator=(const MacWebView&) = delete;

  void setNavigationDelegate(NavigationDelegate* _Nullable delegate) override;
  void setPageDialogDelegate(PageDialogDelegate* _Nullable delegate) override;

  void load(const WebRequest& request) override;
  void load(const PlatformRequest& request) override;
  std::optional<Url> url() const override;
  bool isLoading() const override;
  void evaluateJavaScript(const std::string& script, EvaluationCompletion completion) override;
  void allCookies(CookiesCompletion completion) override;

  NSView* _Nonnull nsView() const;
  // Keeps the keyboard from the page while something covers it: the view refuses to be the first
  // responder and is left out by Tab.
  void setCovered(bool covered);

 private:
  NavoraNavigationForwarder* _Nonnull navigationForwarder_;
  NavoraScriptMessageForwarder* _Nonnull messageForwarder_;
  NavoraPageView* _Nonnull webView_;
  // WebKit completes pending evaluations while its view is deallocated.
  Lifetime lifetime_;
};

}  // namespace navora
