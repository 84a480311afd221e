#include "hosts/macos/web/NavigationForwarder.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/web/MacDownload.h"
#include "hosts/macos/web/MacWebView.h"
#include "hosts/macos/web/NavigationConversions.h"
#include "hosts/macos/web/OnceCallback.h"

using navora::onceCallback;

namespace {

void reportFailure(navora::NavigationDelegate* delegate, NSError* error) {
  if (delegate != nullptr) delegate->didFailNavigation(navora::toPlatformError(error));
}

void reportDownload(navora::NavigationDelegate* delegate, WKDownload* download) {
  // Without a delegate the object is destroyed on return, which cancels the download.
  const auto started = std::make_shared<navora::MacDownload>(download);
  if (delegate != nullptr) delegate->navigationDidBecomeDownload(started);
}

}  // namespace

@implementation NavoraNavigationForwarder

- (void)reportUnsupportedUrl {
  NavoraNavigationForwarder* __weak weakSelf = self;
  dispatch_async(dispatch_get_main_queue(), ^{
    reportFailure(weakSelf.navigationDelegate, [NSError errorWithDomain:NSURLErrorDomain
                                                                   code:NSURLErrorUnsupportedURL
                                                               userInfo:nil]);
  });
}

#pragma mark - WKNavigationDelegate

- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler {
  const bool answerable = self.navigationDelegate != nullptr && self.webView != nullptr;
  if (!answerable) return decisionHandler(WKNavigationActionPolicyCancel);
  self.navigationDelegate->decidePolicyForAction(
      *self.webView, navora::toNavigationAction(navigationAction),
      [=](navora::NavigationPolicy policy) { decisionHandler(navora::toActionPolicy(policy)); });
}

- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationResponse:(WKNavigationResponse*)navigationResponse
                      decisionHandler:(void (^)(WKNavigationResponsePolicy))decisionHandler {
  decisionHandler(navora::toResponsePolicy(
      self.navigationDelegate != nullptr ? self.navigationDelegate->decidePolicyForResponse(
                                               navora::toNavigationResponse(navigationResponse))
                                         : navora::NavigationPolicy::cancel));
}

- (void)webView:(WKWebView*)webView didStartProvisionalNavigation:(WKNavigation*)navigation {
  if (self.navigationDelegate != nullptr) self.navigationDelegate->didStartProvisionalNavigation();
}

- (void)webView:(WKWebView*)webView didFinishNavigation:(WKNavigation*)navigation {
  if (self.navigationDelegate != nullptr) self.navigationDelegate->didFinishNavigation();
}

- (void)webView:(WKWebView*)webView
    didFailProvisionalNavigation:(WKNavigation*)navigation
                       withError:(NSError*)error {
  reportFailure(self.navigationDelegate, error);
}

- (void)webView:(WKWebView*)webView
    didFailNavigation:(WKNavigation*)navigation
            withError:(NSError*)error {
  reportFailure(self.navigationDelegate, error);
}

- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView {
  if (self.navigationDelegate != nullptr) self.navigationDelegate->webContentProcessDidTerminate();
}

- (void)webView:(WKWebView*)webView
     navigationAction:(WKNavigationAction*)navigationAction
    didBecomeDownload:(WKDownload*)download {
  reportDownload(self.navigationDelegate, download);
}

- (void)webView:(WKWebView*)webView
    navigationResponse:(WKNavigationResponse*)navigationResponse
     didBecomeDownload:(WKDownload*)download {
  reportDownload(self.navigationDelegate, download);
}

#pragma mark - WKUIDelegate

- (nullable WKWebView*)webView:(WKWebView*)webView
    createWebViewWithConfiguration:(WKWebViewConfiguration*)configuration
               forNavigationAction:(WKNavigationAction*)navigationAction
                    windowFeatures:(WKWindowFeatures*)windowFeatures {
  // WebKit asks for no policy before window.open() and the context menu's "Open Link in New
  // Window". Without a new view the window is not opened, whatever the answer.
  if (self.navigationDelegate != nullptr && self.webView != nullptr) {
    self.navigationDelegate->decidePolicyForAction(*self.webView,
                                                   navora::toNavigationAction(navigationAction),
                                                   [](navora::NavigationPolicy) {});
  }
  return nil;
}

- (void)webView:(WKWebView*)webView
    runJavaScriptAlertPanelWithMessage:(NSString*)message
                      initiatedByFrame:(WKFrameInfo*)frame
                     completionHandler:(void (^)(void))completionHandler {
  const auto answer = onceCallback(std::function<void()>([=] { completionHandler(); }));
  if (self.pageDialogDelegate == nullptr) return;
  self.pageDialogDelegate->runAlertPanel(navora::toString(message), navora::toFrameInfo(frame),
                                         answer);
}

- (void)webView:(WKWebView*)webView
    runJavaScriptConfirmPanelWithMessage:(NSString*)message
                        initiatedByFrame:(WKFrameInfo*)frame
                       completionHandler:(void (^)(BOOL))completionHandler {
  const auto answer = onceCallback(
      std::function<void(bool)>([=](bool confirmed) { completionHandler(confirmed); }), false);
  if (self.pageDialogDelegate == nullptr) return;
  self.pageDialogDelegate->runConfirmPanel(navora::toString(message), navora::toFrameInfo(frame),
                                           answer);
}

- (void)webView:(WKWebView*)webView
    runJavaScriptTextInputPanelWithPrompt:(NSString*)prompt
                              defaultText:(nullable NSString*)defaultText
                         initiatedByFrame:(WKFrameInfo*)frame
                        completionHandler:(void (^)(NSString* _Nullable))completionHandler {
  const auto answer = onceCallback(
      std::function<void(std::optional<std::string>)>([=](std::optional<std::string> text) {
        completionHandler(text ? navora::toNSString(*text) : nil);
      }),
      std::nullopt);
  if (self.pageDialogDelegate == nullptr) return;
  self.pageDialogDelegate->runTextInputPanel(
      navora::toString(prompt),
      defaultText == nil ? std::nullopt : std::optional(navora::toString(defaultText)),
      navora::toFrameInfo(frame), answer);
}

- (void)webView:(WKWebView*)webView
    runOpenPanelWithParameters:(WKOpenPanelParameters*)parameters
              initiatedByFrame:(WKFrameInfo*)frame
             completionHandler:(void (^)(NSArray<NSURL*>* _Nullable))completionHandler {
  using Paths = std::optional<std::vector<std::filesystem::path>>;
  const auto answer = onceCallback(std::function<void(Paths)>([=](Paths paths) {
                                     completionHandler(paths ? navora::toFileURLs(*paths) : nil);
                                   }),
                                   std::nullopt);
  if (self.pageDialogDelegate == nullptr) return;
  self.pageDialogDelegate->runOpenPanel(navora::toOpenPanelParameters(parameters),
                                        navora::toFrameInfo(frame), answer);
}

// The service needs neither camera nor microphone. Without this method WebKit would ask the user.
- (void)webView:(WKWebView*)webView
    requestMediaCapturePermissionForOrigin:(WKSecurityOrigin*)origin
                          initiatedByFrame:(WKFrameInfo*)frame
                                      type:(WKMediaCaptureType)type
                           decisionHandler:(void (^)(WKPermissionDecision))decisionHandler {
  decisionHandler(WKPermissionDecisionDeny);
}

@end
